// What is wrong with the method of a request.
#pragma once

#include <string>

// Says, for people, that a request asks for no method that the host knows, and which one is meant;
// empty if it does, or if the text is no request.
std::string method_advice(std::string request);

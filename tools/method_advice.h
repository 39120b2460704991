// Finds what is wrong with the method of a request.
#pragma once

#include <string>

// Tells people that a request asks for no method the host knows, and which one may be meant. Empty
// if the method is known, or if the text isn't a request.
std::string method_advice(std::string request);

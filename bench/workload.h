// What the measurements work on: pages like those of the web, the same on every run. A set holds
// many different texts of one shape, so that a branch predictor can't learn one of them by heart.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

enum class page_flavour {
  mixed,    // as pages are: mostly ASCII, now and then another script or a quote
  escaped,  // all beyond ASCII as \u escapes, and many other escapes
};

// Requests of the extension, each for a page of so many inputs.
std::vector<std::string> make_requests(int inputs, page_flavour flavour = page_flavour::mixed);

// The frames of these requests, with envelopes as large as the host takes them.
std::string frames_of(const std::vector<std::string>& requests);

// Envelopes of about `size` bytes that hold a piece.
std::vector<std::string> make_envelopes(std::size_t size);

enum class script { ascii, latin, chinese };

// UTF-8 texts of at least `size` bytes.
std::vector<std::string> make_texts(script letters, std::size_t size);

// Bytes of any value.
std::vector<std::string> make_binaries(std::size_t size);

// What the measurements work on: pages like those on the web, the same in every run. A set holds
// many different texts of one shape, so that a branch predictor can't learn one of them by heart.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

enum class page_flavour {
  mixed,    // like real pages: mostly ASCII, now and then another script or a quote
  escaped,  // everything beyond ASCII as \u escapes, and many other escapes
};

// Requests of the extension, each for a page with `inputs` inputs.
std::vector<std::string> make_requests(int inputs, page_flavour flavour = page_flavour::mixed);

// The frames of these requests, with envelopes as large as the host accepts.
std::string frames_of(const std::vector<std::string>& requests);

// Envelopes of about `size` bytes that hold a piece.
std::vector<std::string> make_envelopes(std::size_t size);

enum class script { ascii, latin, chinese };

// UTF-8 texts of at least `size` bytes.
std::vector<std::string> make_texts(script letters, std::size_t size);

// Bytes of any value.
std::vector<std::string> make_binaries(std::size_t size);

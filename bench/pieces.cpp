// The host's own pieces next to what others would use for the same work. The measurements are named
// WORK/SET/CANDIDATE; one run works through a whole set.

#include <benchmark/benchmark.h>
#include <rapidjson/document.h>
#include <simdjson.h>

#include <cstring>
#include <functional>

#include "bench/peers/plain_codecs.h"
#include "bench/workload.h"
#include "json/parser.h"
#include "platform/platform.h"
#include "transport/codecs/base64.h"

namespace {

using texts = std::vector<std::string>;

// Works on one text; returns something that depends on the result.
using candidate = std::function<std::size_t(const std::string&)>;

void measure(const std::string& name, const texts& set, const candidate& work) {
  benchmark::RegisterBenchmark(name.c_str(), [&set, work](benchmark::State& state) {
    for (auto _ : state) {
      for (const std::string& text : set) benchmark::DoNotOptimize(work(text));
    }
  })->Unit(benchmark::kNanosecond);
}

// Keeps a set until the process ends.
const texts& kept(texts set) { return *new texts(std::move(set)); }

// A buffer for results, large enough for every set.
char* buffer() {
  static std::vector<char> bytes(8 << 20);
  return bytes.data();
}

std::size_t parse_ours(const std::string& text) {
  std::memcpy(buffer(), text.c_str(), text.size() + 1);
  scoped_node_arena nodes;
  const char* position = nullptr;
  const char* description = nullptr;
  return json_parse(buffer(), position, description, nodes) != nullptr ? 1 : 0;
}

std::size_t parse_rapidjson(const std::string& text) {
  std::memcpy(buffer(), text.c_str(), text.size() + 1);
  rapidjson::Document document;
  document.ParseInsitu(buffer());
  return document.MemberCount();
}

std::size_t parse_simdjson(const std::string& text) {
  static simdjson::dom::parser parser;
  simdjson::dom::element root;
  return parser.parse(text).get(root) == simdjson::SUCCESS ? 1 : 0;
}

void measure_parsers(const std::string& set, const texts& documents) {
  measure("parse/" + set + "/rapidjson in situ", documents, parse_rapidjson);
  measure("parse/" + set + "/simdjson, kept", documents, parse_simdjson);
  measure("parse/" + set + "/ours", documents, parse_ours);
}

void measure_base64(const std::string& set, std::size_t size) {
  const texts& binaries = kept(make_binaries(size));
  texts encoded;
  for (const std::string& bytes : binaries) {
    const auto* const first = reinterpret_cast<const unsigned char*>(bytes.data());
    encoded.emplace_back(buffer(), plain_base64_encode(first, bytes.size(), buffer()));
  }
  measure("encode/" + set + "/plain loop", binaries, [](const std::string& bytes) {
    const auto* const first = reinterpret_cast<const unsigned char*>(bytes.data());
    return plain_base64_encode(first, bytes.size(), buffer());
  });
  measure("encode/" + set + "/ours", binaries, [](const std::string& bytes) {
    std::int32_t length = 8 << 20;
    base64_encode(bytes.data(), static_cast<std::int32_t>(bytes.size()), buffer(), &length);
    return static_cast<std::size_t>(length);
  });
  const texts& characters = kept(std::move(encoded));
  measure("decode/" + set + "/plain loop", characters, [](const std::string& text) {
    return plain_base64_decode(text.data(), text.size(), buffer());
  });
  measure("decode/" + set + "/ours", characters, [](const std::string& text) {
    std::int32_t length = 8 << 20;
    base64_decode(text.data(), buffer(), &length, text.data() + text.size());
    return static_cast<std::size_t>(length);
  });
}

char16_t* wide_buffer() {
  static std::vector<char16_t> units(1 << 20);
  return units.data();
}

// Converts there and back.
void measure_utf(const std::string& set, script letters, std::size_t size) {
  const texts& utf8 = kept(make_texts(letters, size));
  measure("utf/" + set + "/plain loop", utf8, [](const std::string& text) {
    const std::size_t count = plain_utf8_to_utf16(text.data(), text.size(), wide_buffer());
    return plain_utf16_to_utf8(wide_buffer(), count, buffer());
  });
  measure("utf/" + set + "/ours", utf8, [](const std::string& text) {
    const auto size_in = static_cast<std::uint32_t>(text.size());
    const std::size_t count = platform::utf8_to_utf16(text.data(), size_in, wide_buffer());
    return platform::utf16_to_utf8(wide_buffer(), static_cast<std::uint32_t>(count), buffer());
  });
}

}  // namespace

int main(int argc, char** argv) {
  for (const int inputs : {1, 5, 40, 400, 4000}) {
    measure_parsers("page" + std::to_string(inputs), kept(make_requests(inputs)));
  }
  measure_parsers("page40esc", kept(make_requests(40, page_flavour::escaped)));
  for (const std::size_t size : {47u, 500u, 8000u}) {
    measure_parsers("env" + std::to_string(size), kept(make_envelopes(size)));
  }
  const std::pair<const char*, std::size_t> sizes[] = {
      {"24 B", 24}, {"318 B", 318}, {"8 KB", 8 << 10}, {"1 MB", 1 << 20}};
  for (const auto& [name, size] : sizes) measure_base64(name, size);
  const std::pair<const char*, std::size_t> lengths[] = {{"16", 16}, {"200", 200}, {"10K", 10'000}};
  for (const auto& [name, size] : lengths) {
    measure_utf(std::string("ASCII ") + name, script::ascii, size);
    measure_utf(std::string("Latin ") + name, script::latin, size);
    measure_utf(std::string("Chinese ") + name, script::chinese, size);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

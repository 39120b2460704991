#include "platform/library_facts.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace platform {
namespace {

// More than any library imports; a damaged file may seem to have no end.
constexpr std::size_t most_imports = 1000;

struct named_machine {
  std::uint32_t number;
  const char* name;
};

constexpr named_machine elf_machines[] = {
    {3, "x86"},  {8, "mips"},    {20, "ppc"},      {21, "ppc64"},  {22, "s390x"},
    {40, "arm"}, {62, "x86-64"}, {183, "aarch64"}, {243, "riscv"}, {258, "loongarch"},
};

constexpr named_machine pe_machines[] = {
    {0x14C, "x86"}, {0x1C4, "arm"}, {0x8664, "x86-64"}, {0xAA64, "aarch64"}, {0x5064, "riscv"},
};

template <std::size_t Count>
std::string name_of(const named_machine (&machines)[Count], std::uint32_t number) {
  for (const named_machine& each : machines) {
    if (each.number == number) return each.name;
  }
  return "machine " + std::to_string(number);
}

// Reads fields of a file, low byte first; 0 for what lies outside.
class fields {
 public:
  explicit fields(std::string_view content) : content_(content) {}

  template <class Integer>
  Integer at(std::size_t place) const {
    Integer value = 0;
    if (place <= content_.size() && sizeof value <= content_.size() - place) {
      std::memcpy(&value, content_.data() + place, sizeof value);
    }
    return value;
  }

  std::string text_at(std::size_t place) const {
    if (place >= content_.size()) return {};
    const std::string_view rest = content_.substr(place, 260);
    return std::string(rest.substr(0, rest.find('\0')));
  }

  bool starts_with(std::string_view bytes, std::size_t place = 0) const {
    return place <= content_.size() && content_.substr(place).substr(0, bytes.size()) == bytes;
  }

 private:
  std::string_view content_;
};

library_facts facts_of_elf(const fields& file) {
  constexpr std::uint16_t shared_object = 3;
  constexpr char high_byte_first = 2;
  constexpr char wide_class = 2;
  const auto swapped = [&file](std::size_t place) {
    const auto value = file.at<std::uint16_t>(place);
    const bool turn = file.at<char>(5) == high_byte_first;
    return turn ? static_cast<std::uint16_t>(value << 8 | value >> 8) : value;
  };
  library_facts facts{"Linux", name_of(elf_machines, swapped(18)), false, {}};
  if (facts.machine == "x86-64" && file.at<char>(4) != wide_class) facts.machine = "x32";
  facts.is_library = swapped(16) == shared_object;
  return facts;
}

// A Windows file. Its sections map the addresses that its tables use to places in the file.
class pe_file {
 public:
  pe_file(const fields& file, std::size_t header)
      : file_(file),
        header_(header),
        sections_(header + 24 + file.at<std::uint16_t>(header + 20)) {}

  library_facts facts() const {
    constexpr std::uint16_t is_dll = 0x2000;
    const auto flags = file_.at<std::uint16_t>(header_ + 22);
    return {"Windows", name_of(pe_machines, file_.at<std::uint16_t>(header_ + 4)),
            (flags & is_dll) != 0, imports()};
  }

 private:
  std::vector<std::string> imports() const {
    constexpr std::uint16_t wide_form = 0x20B;
    constexpr std::size_t entry_size = 20;
    const bool is_wide = file_.at<std::uint16_t>(header_ + 24) == wide_form;
    const std::size_t directory = header_ + 24 + (is_wide ? 112 : 96) + 8;
    std::size_t entry = place_of(file_.at<std::uint32_t>(directory));
    std::vector<std::string> names;
    for (; entry != 0 && names.size() < most_imports; entry += entry_size) {
      std::string name = file_.text_at(place_of(file_.at<std::uint32_t>(entry + 12)));
      if (name.empty() || file_.at<std::uint32_t>(entry + 12) == 0) break;
      names.push_back(std::move(name));
    }
    return names;
  }

  // Where in the file the address lies; 0 if it doesn't.
  std::size_t place_of(std::uint32_t address) const {
    const std::size_t count = file_.at<std::uint16_t>(header_ + 6);
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t section = sections_ + i * 40;
      const auto start = file_.at<std::uint32_t>(section + 12);
      if (address < start || address - start >= file_.at<std::uint32_t>(section + 16)) continue;
      return std::size_t{file_.at<std::uint32_t>(section + 20)} + (address - start);
    }
    return 0;
  }

  const fields& file_;
  std::size_t header_;
  std::size_t sections_;
};

}  // namespace

library_facts facts_of_library(std::string_view content) {
  using namespace std::string_view_literals;
  const fields file(content);
  if (file.starts_with("\x7F"
                       "ELF"sv))
    return facts_of_elf(file);
  if (file.starts_with("MZ"sv)) {
    const std::size_t header = file.at<std::uint32_t>(60);
    if (file.starts_with("PE\0\0"sv, header)) return pe_file(file, header).facts();
  }
  for (const auto mach : {"\xCF\xFA\xED\xFE"sv, "\xCE\xFA\xED\xFE"sv, "\xCA\xFE\xBA\xBE"sv}) {
    if (file.starts_with(mach)) return {"macOS", "another processor", true, {}};
  }
  return {};
}

}  // namespace platform

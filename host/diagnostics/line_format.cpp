#include "host/diagnostics/line_format.h"

#include <cstdio>

namespace {

template <class Element>
class line_formatter {
 public:
  line_formatter(Element* out, std::size_t capacity) : out_(out), end_(out + capacity - 1) {}
  ~line_formatter() { *out_ = 0; }
  line_formatter(const line_formatter&) = delete;
  line_formatter& operator=(const line_formatter&) = delete;

  void put(Element element) {
    if (out_ < end_) *out_++ = element;
  }

  template <class Source>
  void put_text(const Source* text) {
    while (*text != 0 && out_ < end_) put(static_cast<Element>(*text++));
  }

  void put_number(int value, int width) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%*d", width, value);
    put_text(digits);
  }

 private:
  Element* out_;
  Element* end_;
};

// The element type of the other width, which %S takes.
template <class Element>
struct other_width {
  using type = wide_char;
};
template <>
struct other_width<wide_char> {
  using type = char;
};

template <class Element>
int take_width(const Element*& format) {
  int width = 0;
  for (; *format >= '0' && *format <= '9' && width < 10; ++format)
    width = width * 10 + (*format - '0');
  return width;
}

template <class Element>
Element* format_elements(Element* out, std::size_t capacity, const Element* format,
                         std::va_list arguments) {
  line_formatter<Element> line(out, capacity);
  while (*format != 0) {
    if (*format != '%') {
      line.put(*format++);
      continue;
    }
    const Element* const directive = format++;
    const int width = take_width(format);
    if (*format == 's') {
      const Element* const text = va_arg(arguments, const Element*);
      line.put_text(text);
    } else if (*format == 'S') {
      const auto* const text = va_arg(arguments, const typename other_width<Element>::type*);
      line.put_text(text);
    } else if (*format == 'd') {
      line.put_number(va_arg(arguments, int), width);
    } else {
      line.put('%');
      format = *format == '%' ? format : directive;
    }
    ++format;
  }
  return out;
}

}  // namespace

char* format_line(char* out, std::size_t capacity, const char* format, std::va_list arguments) {
  return format_elements(out, capacity, format, arguments);
}

wide_char* format_line(wide_char* out, std::size_t capacity, const wide_char* format,
                       std::va_list arguments) {
  return format_elements(out, capacity, format, arguments);
}

#include "si/parse_internal.h"

#include <algorithm>
#include <string>
#include <vector>

#include "si/term_internal.h"

namespace si::detail {
namespace {

constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

// The last operators in front of a place that are as deep in parentheses as that place.
struct operators {
  std::size_t product = nowhere;  // of `*` or `/`
  std::size_t power = nowhere;    // of `^`
};

// For each place of the text the operators in front of it, so that a range that ends there is split
// without being searched.
std::vector<operators> link_operators(std::string_view text, std::size_t parentheses) {
  std::vector<operators> links(text.size() + 1);
  // By depth, which lies below 0 where parentheses close before they open.
  std::vector<operators> last(2 * parentheses + 1);
  std::size_t depth = parentheses;
  for (std::size_t i = 0; i < text.size(); ++i) {
    links[i] = last[depth];
    if (text[i] == '(') ++depth;
    if (text[i] == ')') --depth;
    if (text[i] == '*' || text[i] == '/') last[depth].product = i;
    if (text[i] == '^') last[depth].power = i;
  }
  links.back() = last[depth];
  return links;
}

// Something still to be done: to read a range of the text, or to apply an operator. A power bears the
// range of its exponent.
struct task {
  char operation;
  std::size_t begin;
  std::size_t end;
};

constexpr char read_range = 'r';

// Works on ranges of the text, with the pending tasks on a stack of its own: the nesting of a text is
// bounded by nothing but its length.
class evaluator {
 public:
  evaluator(std::string_view text, std::size_t parentheses)
      : text_(text), links_(link_operators(text, parentheses)) {}

  bool run(value& result) {
    tasks_.push_back({read_range, 0, text_.size()});
    while (!tasks_.empty()) {
      const task next = tasks_.back();
      tasks_.pop_back();
      if (!(next.operation == read_range ? read(next.begin, next.end) : apply(next))) return false;
    }
    result = values_.back();
    return true;
  }

 private:
  bool read(std::size_t begin, std::size_t end) {
    if (begin == end) return false;
    // Intended: the two need not belong to one another;
    // ParseTest.OuterParenthesesAreStrippedEvenIfTheyDoNotBelongTogether.
    if (end - begin > 1 && text_[begin] == '(' && text_[end - 1] == ')') {
      tasks_.push_back({read_range, begin + 1, end - 1});
      return true;
    }
    const auto [product, power] = links_[end];
    if (is_within(product, begin)) {
      split_product(begin, product, end);
      return true;
    }
    if (is_within(power, begin)) {
      tasks_.push_back({'^', power + 1, end});
      tasks_.push_back({read_range, begin, power});
      return true;
    }
    return read_term(begin, end);
  }

  static bool is_within(std::size_t place, std::size_t begin) {
    return place != nowhere && place >= begin;
  }

  // The left side is read first.
  void split_product(std::size_t begin, std::size_t place, std::size_t end) {
    tasks_.push_back({text_[place], 0, 0});
    tasks_.push_back({read_range, place + 1, end});
    tasks_.push_back({read_range, begin, place});
  }

  bool read_term(std::size_t begin, std::size_t end) {
    return parse_term(text_.substr(begin, end - begin), values_.emplace_back());
  }

  bool apply(const task& next) {
    if (next.operation == '^') return raise(next.begin, next.end);
    const value right = values_.back();
    values_.pop_back();
    if (next.operation == '*') {
      values_.back() *= right;
    } else {
      values_.back() /= right;
    }
    return true;
  }

  bool raise(std::size_t begin, std::size_t end) {
    fraction power;
    if (!power.parse(std::string(text_.substr(begin, end - begin)))) return false;
    values_.back() ^= power;
    return true;
  }

  std::string_view text_;
  std::vector<operators> links_;
  std::vector<task> tasks_;
  std::vector<value> values_;
};

std::size_t count(std::string_view text, char character) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), character));
}

}  // namespace

bool parse(std::string_view text, value& result) {
  if (text.empty()) return false;
  if (text.find_first_of("*/^()") == std::string_view::npos) return parse_term(text, result);
  // As many have to close as open, in the whole text and so in every part that it is split into.
  const std::size_t parentheses = count(text, '(');
  if (parentheses != count(text, ')')) return false;
  return evaluator(text, parentheses).run(result);
}

}  // namespace si::detail

namespace si {

value::value(const std::string& text) { *this = text; }

value& value::operator=(const std::string& text) {
  clear();
  if (!detail::parse(text, *this)) invalidate();
  return *this;
}

bool value::set_value(const std::string& text, double factor) {
  *this = text;
  value_ *= factor;
  return valid_;
}

double value::in(const std::string& text) const { return value(*this) /= value(text); }

}  // namespace si

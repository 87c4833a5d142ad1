#include "simulation/wql_query.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "simulation/text_comparison.h"

namespace zt::simulation::wql {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kSymbols = "=,()*{}";

bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool StartsNumber(char c) {
  return IsDigit(c) || c == '-' || c == '+';
}
bool BelongsToNumber(char c) {
  return IsDigit(c) || IsLetter(c) || c == '.' || c == '-' || c == '+';
}

bool IsDecimal(std::string_view text) {
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view whole = text.substr(0, point);
  const std::string_view fraction = point < text.size() ? text.substr(point + 1) : "0";
  return !whole.empty() && !fraction.empty() && std::all_of(whole.begin(), whole.end(), IsDigit) &&
         std::all_of(fraction.begin(), fraction.end(), IsDigit);
}

struct Token {
  enum class Kind { kWord, kNumber, kText, kSymbol, kEnd, kMalformed };
  Kind kind = Kind::kEnd;
  std::string text;
};

// Cuts a query into words, numbers, texts (their escapes resolved) and symbols.
class Tokens {
 public:
  explicit Tokens(std::string_view rest) : rest_(rest) { Advance(); }

  const Token& Current() const { return current_; }
  std::string_view Rest() const { return rest_; }

  void Advance() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
    if (rest_.empty()) {
      current_ = {};
    } else if (rest_.front() == '\'' || rest_.front() == '"') {
      TakeText();
    } else if (IsLetter(rest_.front())) {
      Take(Token::Kind::kWord, [](char c) { return IsLetter(c) || IsDigit(c); });
    } else if (StartsNumber(rest_.front())) {
      Take(Token::Kind::kNumber, BelongsToNumber);
      if (!IsDecimal(current_.text)) current_.kind = Token::Kind::kMalformed;
    } else {
      const bool known = kSymbols.find(rest_.front()) != std::string_view::npos;
      current_ = {known ? Token::Kind::kSymbol : Token::Kind::kMalformed, std::string(1, rest_.front())};
      rest_.remove_prefix(1);
    }
  }

 private:
  template <typename Belongs>
  void Take(Token::Kind kind, Belongs belongs) {
    const auto end = std::find_if_not(rest_.begin(), rest_.end(), belongs);
    current_ = {kind, std::string(rest_.begin(), end)};
    rest_.remove_prefix(current_.text.size());
  }

  void TakeText() {
    const char quote = rest_.front();
    current_ = {Token::Kind::kMalformed, {}};
    for (std::size_t i = 1; i < rest_.size(); ++i) {
      if (rest_[i] == quote) {
        current_.kind = Token::Kind::kText;
        rest_.remove_prefix(i + 1);
        return;
      }
      if (rest_[i] == '\\' && ++i == rest_.size()) break;
      current_.text += rest_[i];
    }
    rest_ = {};
  }

  std::string_view rest_;
  Token current_;
};

// Recursive descent over the tokens; each operation returns false, or nothing, where the text is malformed.
class Parser {
 public:
  explicit Parser(std::string_view text) : tokens_(text) {}

  std::optional<Query> ParseQuery() {
    if (TakeKeyword("SELECT")) return ParseSelect();
    if (TakeKeyword("ASSOCIATORS")) return ParseAssociators();
    return std::nullopt;
  }

 private:
  std::optional<Query> ParseSelect() {
    Select select;
    const bool read = ReadSelectList(select.properties) && TakeKeyword("FROM") && TakeWord(select.class_name) &&
                      (AtEnd() || (TakeKeyword("WHERE") && ReadAny(select.condition) && AtEnd()));
    if (!read) return std::nullopt;
    return select;
  }

  std::optional<Query> ParseAssociators() {
    // The object is taken as it stands, up to the last brace: key values are not escaped alike everywhere.
    if (!IsKeyword("OF")) return std::nullopt;
    const std::string_view rest = tokens_.Rest();
    const std::size_t open = rest.find_first_not_of(kBlanks);
    const std::size_t close = rest.rfind('}');
    if (open == std::string_view::npos || rest[open] != '{' || close == std::string_view::npos) return std::nullopt;
    AssociatorsOf associators{std::string(rest.substr(open + 1, close - open - 1)), {}};
    tokens_ = Tokens(rest.substr(close + 1));
    const bool read = AtEnd() || (TakeKeyword("WHERE") && TakeKeyword("ResultClass") && TakeSymbol('=') &&
                                  TakeWord(associators.result_class) && AtEnd());
    if (!read) return std::nullopt;
    return associators;
  }

  bool ReadSelectList(std::vector<std::string>& properties) {
    if (TakeSymbol('*')) return true;
    do {
      std::string property;
      if (!TakeWord(property)) return false;
      properties.push_back(std::move(property));
    } while (TakeSymbol(','));
    return true;
  }

  bool ReadAny(Condition& condition) {
    condition.kind = Condition::Kind::kAny;
    do {
      if (!ReadAll(condition.terms.emplace_back())) return false;
    } while (TakeKeyword("OR"));
    return true;
  }

  bool ReadAll(Condition& condition) {
    condition.kind = Condition::Kind::kAll;
    do {
      if (!ReadTerm(condition.terms.emplace_back())) return false;
    } while (TakeKeyword("AND"));
    return true;
  }

  bool ReadTerm(Condition& condition) {
    if (TakeSymbol('(')) return ReadParenthesis(condition);
    condition.kind = Condition::Kind::kComparison;
    return TakeWord(condition.comparison.property) && TakeSymbol('=') && TakeLiteral(condition.comparison.literal);
  }

  // Each level is a call in a call here and in whoever reads the condition: of many, a text is malformed.
  bool ReadParenthesis(Condition& condition) {
    constexpr int kMostLevels = 64;
    if (++levels_ > kMostLevels) return false;
    const bool read = ReadAny(condition) && TakeSymbol(')');
    --levels_;
    return read;
  }

  bool TakeLiteral(Literal& literal) {
    const Token token = tokens_.Current();
    if (token.kind == Token::Kind::kText) {
      literal = token.text;
    } else if (token.kind == Token::Kind::kNumber) {
      literal = Number{token.text};
    } else if (IsKeyword("TRUE") || IsKeyword("FALSE")) {
      literal = IsKeyword("TRUE");
    } else {
      return false;
    }
    tokens_.Advance();
    return true;
  }

  bool TakeWord(std::string& word) {
    if (tokens_.Current().kind != Token::Kind::kWord) return false;
    word = tokens_.Current().text;
    tokens_.Advance();
    return true;
  }

  bool TakeSymbol(char symbol) {
    const bool found = tokens_.Current().kind == Token::Kind::kSymbol && tokens_.Current().text.front() == symbol;
    if (found) tokens_.Advance();
    return found;
  }

  bool TakeKeyword(std::string_view keyword) {
    const bool found = IsKeyword(keyword);
    if (found) tokens_.Advance();
    return found;
  }

  bool IsKeyword(std::string_view keyword) const {
    return tokens_.Current().kind == Token::Kind::kWord && EqualIgnoringCase(tokens_.Current().text, keyword);
  }

  bool AtEnd() const { return tokens_.Current().kind == Token::Kind::kEnd; }

  Tokens tokens_;
  int levels_ = 0;
};

}  // namespace

std::optional<Query> Parse(std::string_view text) {
  return Parser(text).ParseQuery();
}

}  // namespace zt::simulation::wql

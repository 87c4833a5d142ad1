#include "host/watch/picture.h"

#include <utf8.h>

#include <algorithm>

#include "host/views/text_table.h"

namespace zt::telemetry::host {
namespace {

constexpr std::size_t kBars = 2;
constexpr std::size_t kMarkWidth = 2;
constexpr std::size_t kSideStep = 8;
constexpr char kMark[] = "* ";
constexpr char kNoMark[] = "  ";
constexpr char kFailureMark[] = "! ";
constexpr char kKeys[] = "q: end   arrows, Page Up, Page Down, Home, End: scroll";

constexpr char kPlain[] = "\x1b[0m";
constexpr char kBold[] = "\x1b[1m";
constexpr char kInverted[] = "\x1b[7m";

std::string Clipped(const std::string& text, std::size_t width) {
  auto end = text.begin();
  for (std::size_t i = 0; i < width && end != text.end(); ++i) utf8::unchecked::next(end);
  return {text.begin(), end};
}

// Where there is no room for both, the right side is shown first.
std::string Bar(const std::string& left, const std::string& right, std::size_t width) {
  const std::string end = Clipped(right.empty() ? right : "  " + right, width);
  const std::string begin = Clipped(left, width - WidthOf(end));
  return kInverted + begin + std::string(width - WidthOf(begin) - WidthOf(end), ' ') + end + kPlain;
}

bool IsIn(const std::vector<LinePart>& parts, std::size_t at) {
  return std::any_of(parts.begin(), parts.end(),
                     [at](const LinePart& part) { return part.begin <= at && at < part.end; });
}

// The letters of a line from `column` on, at most `width` of them.
std::string VisiblePart(const MarkedLine& line, std::size_t column, std::size_t width) {
  std::string text;
  bool inverted = false;
  std::size_t number = 0;
  for (auto letter = line.text.begin(); letter != line.text.end() && number < column + width; ++number) {
    const auto begin = letter;
    utf8::unchecked::next(letter);
    if (number < column) continue;
    const bool changed = IsIn(line.changed, static_cast<std::size_t>(begin - line.text.begin()));
    if (changed != inverted) text += changed ? kInverted : kPlain;
    inverted = changed;
    text.append(begin, letter);
  }
  return inverted ? text + kPlain : text;
}

std::string LineRow(const MarkedLine& line, std::size_t column, std::size_t width) {
  const std::string part = VisiblePart(line, column, width - std::min(width, kMarkWidth));
  if (!line.changed.empty()) return Clipped(kMark, width) + part;
  const bool is_heading = !line.text.empty() && line.text.front() != ' ';
  return Clipped(kNoMark, width) + (is_heading ? kBold + part + kPlain : part);
}

std::string PlaceText(const PictureContents& contents, const TerminalSize& size, const WindowPlace& place) {
  const std::size_t count = contents.lines.lines.size();
  if (count == 0) return {};
  const std::size_t end = std::min(place.line + WindowRows(contents, size), count);
  return "lines " + std::to_string(std::min(place.line + 1, count)) + "-" + std::to_string(end) + " of " +
         std::to_string(count);
}

std::size_t LastColumn(const PictureContents& contents, const TerminalSize& size) {
  std::size_t width = 0;
  for (const MarkedLine& line : contents.lines.lines) width = std::max(width, WidthOf(line.text) + kMarkWidth);
  return width - std::min(width, size.columns);
}

std::size_t Back(std::size_t from, std::size_t by) {
  return from - std::min(from, by);
}

}  // namespace

std::size_t WindowRows(const PictureContents& contents, const TerminalSize& size) {
  return Back(size.rows, kBars + (contents.failure.empty() ? 0 : 1));
}

void MoveWindow(TerminalEvent event, const PictureContents& contents, const TerminalSize& size, WindowPlace& place) {
  const std::size_t rows = WindowRows(contents, size);
  const std::size_t page = std::max<std::size_t>(rows, 2) - 1;  // one line stays in sight
  const std::size_t last = Back(contents.lines.lines.size(), rows);
  switch (event) {
    case TerminalEvent::kUp:
      place.line = Back(place.line, 1);
      break;
    case TerminalEvent::kDown:
      ++place.line;
      break;
    case TerminalEvent::kPageUp:
      place.line = Back(place.line, page);
      break;
    case TerminalEvent::kPageDown:
      place.line += page;
      break;
    case TerminalEvent::kFirst:
      place = {};
      break;
    case TerminalEvent::kLast:
      place.line = last;
      break;
    case TerminalEvent::kLeft:
      place.column = Back(place.column, kSideStep);
      break;
    case TerminalEvent::kRight:
      place.column += kSideStep;
      break;
    default:
      break;
  }
  place.line = std::min(place.line, last);
  place.column = std::min(place.column, LastColumn(contents, size));
}

std::vector<std::string> Picture(const PictureContents& contents, const TerminalSize& size, const WindowPlace& place) {
  std::vector<std::string> rows = {Bar(contents.title, contents.pass, size.columns)};
  if (!contents.failure.empty()) {
    rows.push_back(kBold + Clipped(kFailureMark + contents.failure, size.columns) + kPlain);
  }
  const std::vector<MarkedLine>& lines = contents.lines.lines;
  for (std::size_t i = 0; i < WindowRows(contents, size); ++i) {
    const std::size_t line = place.line + i;
    rows.push_back(line < lines.size() ? LineRow(lines[line], place.column, size.columns) : std::string());
  }
  rows.push_back(Bar(kKeys, PlaceText(contents, size, place), size.columns));
  rows.resize(size.rows);
  return rows;
}

std::string DrawnRows::Update(const std::vector<std::string>& rows) {
  std::string update;
  if (rows_.size() != rows.size()) {
    update = "\x1b[2J";
    rows_.assign(rows.size(), "");
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i] == rows_[i]) continue;
    update += "\x1b[" + std::to_string(i + 1) + ";1H\x1b[K" + rows[i];
  }
  rows_ = rows;
  return update;
}

}  // namespace zt::telemetry::host

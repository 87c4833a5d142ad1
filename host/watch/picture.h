#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/terminal.h"
#include "host/watch/marked_lines.h"

namespace zt::telemetry::host {

/// What is drawn: a bar above, lines of which a window is shown, and a bar below.
struct PictureContents {
  std::string title;    // of the bar above, on its left
  std::string pass;     // on its right
  std::string failure;  // above the lines; empty where there is none
  MarkedLines lines;
};

/// Where the window on the lines begins.
struct WindowPlace {
  std::size_t line = 0;
  std::size_t column = 0;
};

/// Lines that the window of a terminal of this size has room for.
std::size_t WindowRows(const PictureContents& contents, const TerminalSize& size);

/// Moves the window by what a key means; the lines stay in it.
void MoveWindow(TerminalEvent event, const PictureContents& contents, const TerminalSize& size, WindowPlace& place);

/// The rows of the picture, as many as the terminal has, none wider than it; UTF-8 with control sequences for how
/// letters look. A changed line has an asterisk in front, and its changed cells are inverted.
std::vector<std::string> Picture(const PictureContents& contents, const TerminalSize& size, const WindowPlace& place);

/// What is on the screen of a terminal.
class DrawnRows {
 public:
  /// What a terminal has to be sent so that it shows `rows`: those alone that are not as they were.
  std::string Update(const std::vector<std::string>& rows);
  /// Nothing that was drawn is there any more.
  void Forget() { rows_.clear(); }

 private:
  std::vector<std::string> rows_;
};

}  // namespace zt::telemetry::host

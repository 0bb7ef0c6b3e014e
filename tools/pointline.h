// Points as lines of text: what `clxml transform` reads and writes.
// Numbers alone or named columns, angles in degrees or in degrees, minutes and seconds. Uses maths
// and common.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace clxml::tool {

/// Latitude, longitude (radians) and height, or north, east and elevation; null for what is absent.
using Point = std::array<double, 3>;

/// An angle in degrees, from "48.1", "48d06'00"", "48:06:00", "48°06'00"N" or "W11.5". Minutes and
/// seconds are below 60, and the last part alone may have decimals. False, with the angle as it
/// was, for anything else, for a sign beside a letter, and for the letter of the other axis.
bool AngleFrom (std::string_view text, bool isLatitude, double& degrees);
/// Appends an angle in degrees, minutes and seconds to five decimals, with its letter; "-" for
/// null. AngleFrom reads it.
void AppendAngle (std::string& text, double degrees, bool isLatitude);

/// Why a line is not a point. Thrown as a value.
struct LineFault {
  std::string why;
};

/// What the lines of the input look like.
class PointLines {
 public:
  /// `columns` names the columns with commas between them, or is empty: then a line has two or
  /// three numbers. Refuses with STATUS_Usage columns without both coordinates, or with one twice.
  PointLines (const std::string& columns, bool fromGeodetic, bool toGeodetic, bool inSeconds);

  /// True for a line of the columns' own names: it is passed on by WriteHead.
  bool IsHead (std::string_view line) const;
  void WriteHead (std::string& out, std::string_view line) const;
  /// Reads a line, which Write needs unchanged. Throws LineFault.
  Point Read (std::string_view line);
  /// Writes the point in the columns of the line that was read last, the others as they were, and
  /// the mark, if there is one, after "# ".
  void Write (std::string& out, const Point& point, std::string_view mark) const;

 private:
  void Split (std::string_view line);
  double Number (std::size_t axis, std::string_view word) const;
  void AppendCoordinate (std::string& out, const Point& point, std::size_t axis) const;

  static constexpr std::size_t none = static_cast<std::size_t> (-1);
  bool _hasColumns;
  bool _fromGeodetic, _toGeodetic, _inSeconds;
  std::vector<std::string> _names;
  std::array<std::size_t, 3> _columnOf = {none, none, none};
  std::vector<std::string_view> _fields;  // of the line that was read last
  char _separator = ' ';
};

/// A wrong word as a message quotes it: its beginning, without control characters.
std::string Shown (std::string_view word);

}  // namespace clxml::tool

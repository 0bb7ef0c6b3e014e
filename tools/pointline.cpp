// Points as lines of text: reading and writing them.
#include "pointline.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "common.h"
#include "coordsystem.h"
#include "numerics/maths.h"
#include "str.h"

namespace clxml::tool {
namespace {

constexpr double radians = CONSTANT_Pi / 180.0;
constexpr std::size_t longestLine = 4096;
constexpr std::string_view blanks = " \t";

bool IsSame (std::string_view a, std::string_view b) { return Str (a).EqualInsensitive (Str (b)); }

bool Drop (std::string_view& text, std::initializer_list<std::string_view> marks) {
  for (const std::string_view mark : marks)
    if (text.starts_with (mark)) {
      text.remove_prefix (mark.size ());
      return true;
    }
  return false;
}

std::string_view Trimmed (std::string_view text) {
  text.remove_prefix (std::min (text.find_first_not_of (blanks), text.size ()));
  return text.substr (0, text.find_last_not_of (blanks) + 1);
}

// The digits, and perhaps a point, at the beginning of a text.
std::string_view TakeDigits (std::string_view& text) {
  const std::size_t length = std::min (text.find_first_not_of ("0123456789."), text.size ());
  const std::string_view digits = text.substr (0, length);
  text.remove_prefix (length);
  return digits;
}

void Append (std::string& text, double value, int decimals) {
  if (maths_IsNull (value)) {
    text += '-';
    return;
  }
  char digits[400];
  const auto end =
      std::to_chars (digits, digits + sizeof digits, value, std::chars_format::fixed, decimals).ptr;
  std::string_view shown (digits, static_cast<std::size_t> (end - digits));
  if (shown.find_first_not_of ("-0.") == std::string_view::npos && shown.starts_with ('-'))
    shown.remove_prefix (1);
  text += shown;
}

// The names that a column of a coordinate may have: of latitude, longitude and height, or of north,
// east and elevation. The first of each is the one that is written.
constexpr std::string_view geodeticNames[3][3] = {
    {"lat", "latitude", "phi"}, {"lon", "longitude", "long"}, {"h", "height", "elev"}};
constexpr std::string_view gridNames[3][3] = {
    {"north", "northing", "n"}, {"east", "easting", "e"}, {"elev", "elevation", "h"}};

}  // namespace

bool AngleFrom (std::string_view text, bool isLatitude, double& degrees) {
  if (NumberFrom (text, degrees)) return true;
  const std::string_view letters = isLatitude ? "NSns" : "EWew";
  double sign = 1.0;
  bool hasSign = false;
  const auto takeLetter = [&] (char c) {
    if (hasSign || letters.find (c) == std::string_view::npos) return false;
    if (c == letters[1] || c == letters[3]) sign = -1.0;
    return hasSign = true;
  };
  if (text.empty ()) return false;
  if (takeLetter (text.front ())) {
    text.remove_prefix (1);
  } else if (text.front () == '-' || text.front () == '+') {
    sign = text.front () == '-' ? -1.0 : 1.0;
    hasSign = true;
    text.remove_prefix (1);
  }
  if (!text.empty () && !hasSign && takeLetter (text.back ())) text.remove_suffix (1);

  double parts[3] = {0.0, 0.0, 0.0};
  int count = 0;
  for (bool hasDecimals = false; !text.empty (); count++) {
    const std::string_view digits = TakeDigits (text);
    if (count == 3 || hasDecimals || digits.empty () || !NumberFrom (digits, parts[count]))
      return false;
    hasDecimals = digits.find ('.') != std::string_view::npos;
    bool isMarked = false;
    if (count == 0)
      isMarked = Drop (text, {"\xC2\xB0", "\xC2\xBA", "d", "D", ":"});
    else if (count == 1)
      isMarked = Drop (text, {"'", "\xE2\x80\xB2", "\xE2\x80\x99", ":"});
    else
      isMarked = Drop (text, {"\"", "''", "\xE2\x80\xB3", "\xE2\x80\x9D"});
    if (!isMarked && !text.empty ()) return false;
  }
  if (count == 0 || parts[1] >= 60.0 || parts[2] >= 60.0) return false;
  degrees = sign * (parts[0] + parts[1] / 60.0 + parts[2] / 3600.0);
  return true;
}

void AppendAngle (std::string& text, double degrees, bool isLatitude) {
  if (maths_IsNull (degrees)) {
    text += '-';
    return;
  }
  constexpr int64_t second = 100000;
  const int64_t all = std::llround (std::abs (degrees) * 3600.0 * second);
  char shown[64];
  std::snprintf (shown, sizeof shown, "%d\xC2\xB0%02d'%02d.%05d\"%c",
                 static_cast<int> (all / (3600 * second)),
                 static_cast<int> (all / (60 * second) % 60), static_cast<int> (all / second % 60),
                 static_cast<int> (all % second),
                 isLatitude ? (degrees < 0.0 && all != 0 ? 'S' : 'N')
                            : (degrees < 0.0 && all != 0 ? 'W' : 'E'));
  text += shown;
}

std::string Shown (std::string_view word) {
  std::string shown (word.substr (0, 40));
  for (char& c : shown)
    if (static_cast<unsigned char> (c) < ' ') c = '?';
  return "\"" + shown + "\"";
}

PointLines::PointLines (const std::string& columns, bool fromGeodetic, bool toGeodetic,
                        bool inSeconds)
    : _hasColumns (!columns.empty ()),
      _fromGeodetic (fromGeodetic),
      _toGeodetic (toGeodetic),
      _inSeconds (inSeconds) {
  if (!_hasColumns) {
    _columnOf = {0, 1, 2};
    return;
  }
  const auto& names = fromGeodetic ? geodeticNames : gridNames;
  for (std::size_t begin = 0; begin <= columns.size ();) {
    const std::size_t end = std::min (columns.find (',', begin), columns.size ());
    const std::string name = columns.substr (begin, end - begin);
    begin = end + 1;
    for (std::size_t axis = 0; axis < 3; axis++)
      for (const std::string_view known : names[axis]) {
        if (!IsSame (name, known)) continue;
        if (_columnOf[axis] != none)
          throw Refusal{STATUS_Usage, "--columns: \"" + name + "\" comes twice"};
        _columnOf[axis] = _names.size ();
      }
    _names.push_back (name);
  }
  if (_columnOf[0] == none || _columnOf[1] == none)
    throw Refusal{STATUS_Usage, fromGeodetic ? "--columns: lat and lon are both needed"
                                             : "--columns: north and east are both needed"};
}

// Columns stand between commas, else semicolons, else tabs, else blanks. A field that begins with a
// quotation mark ends with one.
void PointLines::Split (std::string_view line) {
  _fields.clear ();
  _separator = ' ';
  for (const char c : {',', ';', '\t'})
    if (line.find (c) != std::string_view::npos) {
      _separator = c;
      break;
    }
  if (_separator == ' ') {
    for (line = Trimmed (line); !line.empty (); line = Trimmed (line)) {
      _fields.push_back (line.substr (0, line.find (' ')));
      line.remove_prefix (_fields.back ().size ());
    }
    return;
  }
  for (;;) {
    const bool isQuoted = line.starts_with ('"');
    const std::size_t quote = isQuoted ? line.find ('"', 1) : 0;
    const std::size_t end = line.find (_separator, quote == std::string_view::npos ? 0 : quote);
    _fields.push_back (line.substr (0, end));
    if (end == std::string_view::npos) return;
    line.remove_prefix (end + 1);
  }
}

bool PointLines::IsHead (std::string_view line) const {
  if (!_hasColumns) return false;
  PointLines head (*this);
  head.Split (line);
  if (head._fields.size () < _names.size ()) return false;
  for (std::size_t i = 0; i < _names.size (); i++)
    if (!IsSame (Trimmed (head._fields[i]), _names[i])) return false;
  return true;
}

void PointLines::WriteHead (std::string& out, std::string_view line) const {
  PointLines head (*this);
  head.Split (line);
  const auto& names = _toGeodetic ? geodeticNames : gridNames;
  for (std::size_t i = 0; i < head._fields.size (); i++) {
    if (i != 0) out += head._separator;
    const auto axis = std::find (_columnOf.begin (), _columnOf.end (), i);
    out += axis == _columnOf.end () ? head._fields[i] : names[axis - _columnOf.begin ()][0];
  }
  out += '\n';
}

double PointLines::Number (std::size_t axis, std::string_view word) const {
  double number = MATHS_Null;
  if (word == "-" || (_hasColumns && axis == 2 && word.empty ())) return number;
  const bool isAngle = _fromGeodetic && axis < 2;
  if (!(isAngle ? AngleFrom (word, axis == 0, number) : NumberFrom (word, number)))
    throw LineFault{Shown (word) + (isAngle ? " is not an angle" : " is not a number")};
  if (isAngle && axis == 0 && std::abs (number) > 90.0)
    throw LineFault{"a latitude lies within 90 degrees"};
  if (isAngle && axis == 1 && std::abs (number) > 360.0)
    throw LineFault{"a longitude lies within 360 degrees"};
  if (!isAngle) return number;
  return axis == 0 ? number * radians : std::remainder (number * radians, CONSTANT_TwoPi);
}

Point PointLines::Read (std::string_view line) {
  if (line.size () > longestLine) throw LineFault{"too long for a point"};
  Point point = {MATHS_Null, MATHS_Null, MATHS_Null};
  if (_hasColumns) {
    Split (line);
    const std::size_t needed = std::max (_columnOf[0], _columnOf[1]);
    if (_fields.size () <= needed)
      throw LineFault{"has " + std::to_string (_fields.size ()) + " columns; " +
                      Shown (_names[needed]) + " is column " + std::to_string (needed + 1)};
    for (std::size_t axis = 0; axis < 3; axis++)
      if (_columnOf[axis] < _fields.size ())
        point[axis] = Number (axis, Trimmed (_fields[_columnOf[axis]]));
    return point;
  }
  // Two or three numbers with blanks, tabs, a comma or a semicolon between them; a mark of an
  // earlier run may follow.
  std::size_t count = 0;
  for (line = Trimmed (line); !line.empty () && line.front () != '#'; line = Trimmed (line)) {
    const std::string_view word = line.substr (0, line.find_first_of (" \t,;"));
    if (count == point.size ())
      throw LineFault{"more than three numbers, from " + Shown (line) +
                      " on; --columns names what a line has"};
    point[count] = Number (count, word);
    count++;
    line.remove_prefix (word.size ());
    line = Trimmed (line);
    if (line.starts_with (',') || line.starts_with (';')) line.remove_prefix (1);
  }
  if (count < 2) throw LineFault{"a point has two or three numbers"};
  return point;
}

// A tenth of a millimetre, and less of an angle.
void PointLines::AppendCoordinate (std::string& out, const Point& point, std::size_t axis) const {
  if (!_toGeodetic || axis == 2)
    Append (out, point[axis], 4);
  else if (_inSeconds)
    AppendAngle (out, maths_Divide (point[axis], radians), axis == 0);
  else
    Append (out, maths_Divide (point[axis], radians), 11);
}

void PointLines::Write (std::string& out, const Point& point, std::string_view mark) const {
  const std::size_t count = _hasColumns ? _fields.size () : 3;
  for (std::size_t i = 0; i < count; i++) {
    if (i != 0) out += _hasColumns ? _separator : ' ';
    const auto axis = std::find (_columnOf.begin (), _columnOf.end (), i);
    if (axis == _columnOf.end ())
      out += _fields[i];
    else
      AppendCoordinate (out, point, static_cast<std::size_t> (axis - _columnOf.begin ()));
  }
  if (!mark.empty ()) {
    out += _hasColumns ? _separator : ' ';
    out += "# ";
    out += mark;
  }
  out += '\n';
}

}  // namespace clxml::tool

// Numbers as they stand in the XML files that we write.
// Leans on text for the digits and on maths for the null value.
#include "Library/xml/xml_out.h"

#include <cmath>
#include <numbers>

#include "Kernel/text.h"
#include "numerics/maths.h"

namespace clxml {

Str xml_DoubleText (double value) {
  if (maths_IsNull (value)) return Str ();
  if (!(std::fabs (value) < 1.0)) return text_General (value, 14);
  Str text = text_Fixed (value, 14);
  text.TrimRight ('0');
  text.TrimRight ('.');
  return text == "-0" ? Str ("0") : text;
}

Str xml_AngleText (double value) {
  if (maths_IsNull (value)) return Str ();
  if (std::fabs (value - 2 * std::numbers::pi) <= 5e-13) value = 0.0;
  return xml_DoubleText (value * 180 / std::numbers::pi);
}

Str xml_GradeText (double value, bool negate) {
  if (maths_IsNull (value)) return Str ();
  return xml_DoubleText (std::tan (negate ? -value : value) * 100);
}

Str xml_BoolText (bool value) { return Str (value ? "true" : "false"); }

}  // namespace clxml

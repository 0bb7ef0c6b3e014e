// Numbers as they stand in the XML files that we write.
// The road file writer gives every value in one of these forms. Leans on text and maths.
#pragma once

#include "str.h"

namespace clxml {

/// A number in at most 14 digits: below 1.0 (absolute) 14 decimals without trailing zeros, "0" for
/// what rounds to it, otherwise as printf "%.14G". Empty for null.
Str xml_DoubleText (double value);
/// An angle in radians as decimal degrees; within 5e-13 of a full circle it is 0. Empty for null.
Str xml_AngleText (double value);
/// A grade held as an angle in radians, as a percentage: the tangent times 100; negate changes the
/// sign of the angle first. Empty for null.
Str xml_GradeText (double value, bool negate);
/// "true" or "false".
Str xml_BoolText (bool value);

}  // namespace clxml

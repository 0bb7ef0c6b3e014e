// Grades as angles.
// A grade is the angle of a slope in radians, between straight down and straight up; these turn it
// into heights and distances. Leans on maths and str.
#pragma once

namespace clxml {

/// Straight up and straight down, radians. A grade within 1e-5 of either counts as vertical.
inline constexpr double GRADE_Up = 1.5707963267948966;
inline constexpr double GRADE_Down = -1.5707963267948966;

/// True for a grade not above GRADE_Up + 1e-5 and not below GRADE_Down - 1e-5; a null is no grade.
bool grade_IsValid (double grade);

/// The height that a grade gives over a horizontal distance (both in metres): null for a null,
/// the distance itself straight up and its negative straight down, and the distance where the
/// grade's cosine is below 0.0001 in size; otherwise tan (grade) * distance. Asserts the range
/// ("(!(*grade > GRADE_Up)) && (!(*grade < GRADE_Down))").
double grade_Height (double grade, double distance);

/// The horizontal distance that a grade needs for a height (both in metres): null for a null, 0.0
/// for a vertical grade, null where the grade's cosine is below 0.0001 in size, otherwise
/// height / tan (grade), which is null for a grade of 0.0. Asserts the range
/// ("(!(grade > GRADE_Up)) && (!(grade < GRADE_Down))").
double grade_Horizontal (double grade, double height);

}  // namespace clxml

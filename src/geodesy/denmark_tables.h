// The coefficients of the Danish System 34 and System 45.
// Polynomials in both directions for the three areas; denmark.cpp evaluates them.
#pragma once

#include <array>

namespace clxml {

// Degree d first; then, with n = (d + 1)(d + 2)/2 + 1, up to n - 1 the coefficients of the first
// output, at n the origin of the first input, up to 2n - 1 the coefficients of the second output,
// at 2n the origin of the second input. Metres. Inputs and outputs are UTM north and east on the
// one side, local north and west on the other.
extern const std::array<double, 159> denmark_JutlandToLocal;
extern const std::array<double, 159> denmark_JutlandToUTM;
extern const std::array<double, 159> denmark_ZealandToLocal;
extern const std::array<double, 159> denmark_ZealandToUTM;
extern const std::array<double, 33> denmark_BornholmToLocal;
extern const std::array<double, 33> denmark_BornholmToUTM;

}  // namespace clxml

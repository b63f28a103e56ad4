#pragma once

#include <cstddef>

// The calculator module's one entry point, a C function that the server looks up by name once it
// has loaded the module (Calculator): the module alone links libqalculate.
namespace pomvar::srv::calculatormodule {

// The module's file name, beside the server (libexec/pomvar), in the build tree as installed.
inline constexpr const char* kFileName = "pomvar-calculator.so";
inline constexpr const char* kSymbol = "pomvar_calculate";

// Writes the answer of `expression` (UTF-8), and the expression as it was read, into the buffers
// as NUL-terminated UTF-8; returns 1, or 0 when the text has no numeric answer: words that are not
// functions, units or constants, an error, a calculation longer than `timeoutMs`, a currency
// (its rates would be old or fetched).
using Calculate = int (*)(const char* expression,
                          int timeoutMs,
                          char* answer,
                          std::size_t answerSize,
                          char* readAs,
                          std::size_t readAsSize);

} // namespace pomvar::srv::calculatormodule

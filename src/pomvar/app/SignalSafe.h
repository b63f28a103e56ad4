#pragma once

// Output that may be used in a signal handler: no allocation, no locks, write(2) only.
namespace pomvar::signal_safe {

// Writes `text` followed by `detail` and a line break to standard output.
void writeLine(const char* text, const char* detail) noexcept;
// Writes `text` followed by `number` in decimal and a line break to standard output.
void writeLine(const char* text, long number) noexcept;

} // namespace pomvar::signal_safe

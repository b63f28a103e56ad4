#pragma once

#include "TestDesktop.h"

#include <QProcessEnvironment>

#include <cstdint>

namespace pomvar::bench {

// Writes `count` desktop entries into the desktop's system data folder, with `ownIcons` icons
// of a theme of their own (SVG and PNG); every tenth app names an icon that does not exist.
void populate(const test::TestDesktop& desktop, int count, int ownIcons);

// The desktop's environment for the runtime server, with the real icon themes too, as on a
// desktop: their folders are indexed at every scan.
QProcessEnvironment benchEnvironment(const test::TestDesktop& desktop, std::uint16_t port);

// Points this process at benchEnvironment(), for a runtime server run in-process: before the
// QApplication is made.
void useInThisProcess(const test::TestDesktop& desktop);

} // namespace pomvar::bench

#include "app/AppDelegate.h"

#include "app/PidFile.h"
#include "log/Output.h"

namespace pomvar {

void AppDelegate::applicationWillTerminate()
{
    trace("Pomvar: Quitting...");
    PidFile::deleteFile();
}

} // namespace pomvar

#include "app/AppDelegate.h"

#include "app/AppLog.h"
#include "app/PidFile.h"

namespace pomvar {

void AppDelegate::applicationWillTerminate()
{
    trace(lcApp(), "Pomvar: Quitting...");
    PidFile::deleteFile();
}

} // namespace pomvar

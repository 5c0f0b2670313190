#include "CliSupport.h"
#include "Commands.h"

// Placeholder until the command lands.
int RunDiff(const QStringList &)
{
    Err() << "product-editor: diff is not available yet\n";
    return ExitError;
}

#include "CliSupport.h"
#include "Commands.h"

// Placeholder until the command lands.
int RunQuery(const QStringList &)
{
    Err() << "product-editor: query is not available yet\n";
    return ExitError;
}

#include "CliSupport.h"
#include "Commands.h"

// Placeholder until the command lands.
int RunCompareProducts(const QStringList &)
{
    Err() << "product-editor: compare-products is not available yet\n";
    return ExitError;
}

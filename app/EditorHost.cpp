#include "CliSupport.h"
#include "Commands.h"

// Placeholder until the window lands.
int RunEditor(int &, char **)
{
    Err() << "product-editor: the editor window is not available yet\n";
    Err().flush();
    return ExitError;
}

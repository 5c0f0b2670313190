#include "CliSupport.h"
#include "Commands.h"

using namespace ProductEditor;

int RunCheck(const QStringList &args)
{
    QCommandLineParser parser;
    AddCommonOptions(parser);
    if (!ParseCommand(parser, QStringLiteral("check"), args, 1, 1))
        return ExitError;
    FileAccess access;
    auto store = OpenFolder(parser.positionalArguments().at(0), parser, access);
    if (!store)
        return ExitError;
    Out() << "features: " << store->GetFeatures().size() << "\n"
          << "products: " << store->GetProducts().products.size() << "\n"
          << "layouts: " << store->GetLayouts().size() << "\n"
          << "extensions: " << store->GetExtensions().size() << "\n"
          << "licenses: " << store->GetLicenses().size() << "\n";
    return ExitOk;
}

#include "CommandLine.h"
#include "Commands.h"
#include "FileAccess.h"

using namespace ProductEditor;

int RunCheck(const QStringList &args, const Reader &reader)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    AddCatalogueOption(parser);
    if (const auto status = ParseArguments(parser, QStringLiteral("check"), args, 1, 1))
        return *status;
    FileAccess access(FileAccess::Mode::CompareOnly);
    const auto store = OpenFolder(parser.positionalArguments().at(0), CatalogueFile(parser), reader, access.writer());
    if (!store)
        return ExitError;
    Out() << "features: " << store->GetFeatures().size() << "\n"
          << "products: " << store->GetProducts().products.size() << "\n"
          << "layouts: " << store->GetLayouts().size() << "\n"
          << "extensions: " << store->GetExtensions().size() << "\n"
          << "licenses: " << store->GetLicenses().size() << "\n";
    return ExitOk;
}

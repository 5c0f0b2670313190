#include "CliSupport.h"
#include "Commands.h"

#include "models/FeaturesModel.h"
#include "models/QueryFilterFeatureModel.h"

using namespace ProductEditor;

namespace {

struct QueryOption
{
    const char *name;
    std::optional<QStringList> FeatureQuery::*field;
};

const QueryOption queryOptions[] = {
    {"id", &FeatureQuery::ids},
    {"title", &FeatureQuery::titles},
    {"products", &FeatureQuery::products},
    {"layouts", &FeatureQuery::layouts},
    {"licenses", &FeatureQuery::licenses},
};

} // namespace

// Runs the Query page's search from the command line; each option takes the
// text typed into the field of the same name (for this command --licenses is
// that field, not a licence catalogue).
int RunQuery(const QStringList &args)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const QueryOption &option : queryOptions)
        parser.addOption({QString::fromLatin1(option.name),
                          QStringLiteral("Keys of the %1 field, separated by commas.")
                              .arg(QString::fromLatin1(option.name)),
                          QStringLiteral("KEYS")});
    parser.addHelpOption();
    if (!ParseCommand(parser, QStringLiteral("query"), args, 1, 1))
        return ExitError;

    const QString path = parser.positionalArguments().at(0);
    const QString problem = DiagnoseFolder(path);
    if (!problem.isEmpty()) {
        Err() << "product-editor: " << problem << "\n";
        return ExitError;
    }
    for (const QString &warning : SkippedLayoutFiles(path))
        Err() << "product-editor: warning: " << warning << "\n";
    FileAccess access(FileAccess::Mode::CompareOnly);
    VantixJsonData store(path, access.reader(), access.writer(), {});
    if (store.GetProductsOriginalJson().isEmpty()) {
        Err() << "product-editor: " << path << ": the definition folder could not be loaded\n";
        return ExitError;
    }
    store.GetLicenses() = DefaultLicenseCatalogue(store);

    FeatureQuery query;
    for (const QueryOption &option : queryOptions) {
        const QString name = QString::fromLatin1(option.name);
        if (parser.isSet(name))
            query.*option.field = FeatureQuery::Keys(parser.value(name));
    }

    FeaturesModel features(store);
    QueryFilterFeatureModel filter;
    filter.setSourceModel(&features);
    filter.ApplyQuery(query, store);
    const int rows = filter.rowCount();
    for (int row = 0; row < rows; ++row)
        Out() << filter.index(row, 0).data(Qt::DisplayRole).toString() << "\n";
    return rows > 0 ? ExitOk : ExitDifferent;
}

#include "commands/Command.h"
#include "commands/CommandLine.h"
#include "host/FileAccess.h"

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

namespace {

int RunQuery(const QStringList &args, const Reader &reader)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    for (const QueryOption &option : queryOptions)
        parser.addOption({QString::fromLatin1(option.name),
                          QStringLiteral("Keys of the %1 field, separated by commas.")
                              .arg(QString::fromLatin1(option.name)),
                          QStringLiteral("KEYS")});
    if (const auto status = ParseArguments(parser, QStringLiteral("query"), args, 1, 1))
        return *status;

    FileAccess access(FileAccess::Mode::CompareOnly);
    const auto store = OpenFolder(parser.positionalArguments().at(0), QString(), reader, access.writer());
    if (!store)
        return ExitError;

    FeatureQuery query;
    for (const QueryOption &option : queryOptions) {
        const QString name = QString::fromLatin1(option.name);
        if (parser.isSet(name))
            query.*option.field = FeatureQuery::Keys(parser.value(name));
    }

    FeaturesModel features(*store);
    QueryFilterFeatureModel filter;
    filter.setSourceModel(&features);
    filter.ApplyQuery(query, *store);
    const int rows = filter.rowCount();
    for (int row = 0; row < rows; ++row)
        Out() << filter.index(row, 0).data(Qt::DisplayRole).toString() << "\n";
    return rows > 0 ? ExitOk : ExitDifferent;
}

} // namespace

extern const Command QueryCommand{
    QStringLiteral("query"),
    QStringLiteral("  product-editor query DIR [--id KEYS] [--title KEYS] [--products KEYS]\n"
                   "                           [--layouts KEYS] [--licenses KEYS]\n"
                   "      Print the ids of the features that match the query.\n"),
    RunQuery};

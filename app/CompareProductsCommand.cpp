#include "CliSupport.h"
#include "Commands.h"
#include "DiffPrinter.h"

#include <QJsonArray>

using namespace ProductEditor;

namespace {

const QString IdKey = QStringLiteral("id");

// Finds both products in one walk, the way the window's "Compare products..." does.
void FindProducts(const QJsonObject &products, const QString &leftId, const QString &rightId,
                  QJsonObject *left, QJsonObject *right)
{
    const QJsonArray list =
        products.value(QStringLiteral("products")).toObject().value(QStringLiteral("product")).toArray();
    for (const QJsonValue element : list) {
        const QJsonObject product = element.toObject();
        const QString id = product.value(IdKey).toString();
        if (id == leftId)
            *left = product;
        else if (id == rightId)
            *right = product;
        if (!left->isEmpty() && !right->isEmpty())
            break;
    }
}

} // namespace

int RunCompareProducts(const QStringList &args)
{
    QCommandLineParser parser;
    AddCommonOptions(parser);
    parser.addOption({QStringLiteral("format"), QStringLiteral("Output format: text (default) or json."),
                      QStringLiteral("FORMAT"), QStringLiteral("text")});
    if (!ParseCommand(parser, QStringLiteral("compare-products"), args, 3, 3))
        return ExitError;
    DiffFormat format = DiffFormat::Text;
    if (!ParseDiffFormat(parser.value(QStringLiteral("format")), &format))
        return ExitError;

    const QStringList positional = parser.positionalArguments();
    const QString leftId = positional.at(1);
    const QString rightId = positional.at(2);
    FileAccess access;
    auto store = OpenFolder(positional.at(0), parser, access);
    if (!store)
        return ExitError;
    store->UpdateResultJsons();

    QJsonObject left;
    QJsonObject right;
    FindProducts(store->GetProductsResultJson(), leftId, rightId, &left, &right);
    if (leftId == rightId)
        right = left;
    for (const auto &[id, product] : {std::make_pair(leftId, &left), std::make_pair(rightId, &right)}) {
        if (product->isEmpty()) {
            Err() << "product-editor: compare-products: no product with id '" << id << "' in "
                  << positional.at(0) << "\n";
            return ExitError;
        }
    }

    // Objects with different ids are never compared, so the right product is compared
    // as another version of the left one.
    right.insert(IdKey, left.value(IdKey));
    const DiffReport report = CompareDocuments(leftId + QStringLiteral(" / ") + rightId, left, right);
    if (report.model) {
        report.model->setHeaders({QStringLiteral("Key"), leftId, rightId});
        report.model->setEditableMode(false);
    }
    if (format == DiffFormat::Text && !report.model)
        Out() << "=== " << report.name << ": no differences\n";
    const bool different = PrintDiffReports(Out(), {&report}, format, QStringLiteral("product %1").arg(leftId),
                                            QStringLiteral("product %1").arg(rightId));
    return different ? ExitDifferent : ExitOk;
}

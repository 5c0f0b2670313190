#include "CliSupport.h"

#include "Commands.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>

#include <cstdio>

using namespace ProductEditor;

QTextStream &Out()
{
    static QTextStream stream(stdout);
    return stream;
}

QTextStream &Err()
{
    static QTextStream stream(stderr);
    return stream;
}

void AddCommonOptions(QCommandLineParser &parser)
{
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOption({QStringLiteral("licenses"),
                      QStringLiteral("License catalogue: a JSON object of license key to display text."),
                      QStringLiteral("FILE")});
    parser.addHelpOption();
}

bool ParseCommand(QCommandLineParser &parser, const QString &command, const QStringList &args,
                  int minPositional, int maxPositional)
{
    QStringList full = args;
    full.prepend(QStringLiteral("product-editor ") + command);
    QString error;
    if (!parser.parse(full))
        error = parser.errorText();
    else if (parser.isSet(QStringLiteral("help"))) {
        Out() << UsageText();
        Out().flush();
        std::exit(ExitOk);
    } else if (parser.positionalArguments().size() < minPositional)
        error = QStringLiteral("%1: missing argument").arg(command);
    else if (parser.positionalArguments().size() > maxPositional)
        error = QStringLiteral("%1: unexpected argument '%2'")
                    .arg(command, parser.positionalArguments().value(maxPositional));
    if (error.isEmpty())
        return true;
    Err() << "product-editor: " << error << "\n\n" << UsageText();
    Err().flush();
    return false;
}

QString DiagnoseFolder(const QString &path)
{
    const QFileInfo root(path);
    if (!root.exists())
        return QStringLiteral("%1: the definition folder does not exist").arg(path);
    if (!root.isDir())
        return QStringLiteral("%1: not a folder").arg(path);
    const QString productsDir = QDir(path).filePath(QStringLiteral("products"));
    if (!QFileInfo(productsDir).isDir())
        return QStringLiteral("%1: missing \"products\" folder").arg(productsDir);
    const QString productsJson = QDir(productsDir).filePath(QStringLiteral("products.json"));
    if (!QFileInfo::exists(productsJson))
        return QStringLiteral("%1: missing \"products.json\"").arg(productsJson);
    if (QFileInfo(productsJson).isDir())
        return QStringLiteral("%1: \"products.json\" is a folder, not a file").arg(productsJson);
    QFile file(productsJson);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("%1: cannot be read: %2").arg(productsJson, file.errorString());
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return QStringLiteral("%1: not valid JSON: %2 at offset %3")
            .arg(productsJson, parseError.errorString())
            .arg(parseError.offset);
    if (!doc.isObject())
        return QStringLiteral("%1: \"products.json\" is not a JSON object").arg(productsJson);
    if (doc.object().isEmpty())
        return QStringLiteral("%1: \"products.json\" is an empty JSON object").arg(productsJson);
    return QString();
}

QStringList SkippedLayoutFiles(const QString &path)
{
    QStringList skipped;
    const QDir layouts(QDir(path).filePath(QStringLiteral("layouts")));
    if (!layouts.exists())
        return skipped;
    for (const QFileInfo &info : layouts.entryInfoList(QDir::Files)) {
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly)) {
            skipped << QStringLiteral("%1: skipped, cannot be read: %2")
                           .arg(info.filePath(), file.errorString());
            continue;
        }
        QJsonParseError parseError;
        const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &parseError);
        if (parseError.error != QJsonParseError::NoError)
            skipped << QStringLiteral("%1: skipped, not valid JSON: %2 at offset %3")
                           .arg(info.filePath(), parseError.errorString())
                           .arg(parseError.offset);
        else if (!doc.isObject() || doc.object().isEmpty())
            skipped << QStringLiteral("%1: skipped, not a non-empty JSON object").arg(info.filePath());
    }
    return skipped;
}

bool ReadLicenseCatalogue(const QString &fileName, QMap<QString, QString> *catalogue, QString *error)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: cannot be read: %2").arg(fileName, file.errorString());
        return false;
    }
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        *error = QStringLiteral("%1: not valid JSON: %2 at offset %3")
                     .arg(fileName, parseError.errorString())
                     .arg(parseError.offset);
        return false;
    }
    if (!doc.isObject()) {
        *error = QStringLiteral("%1: the license catalogue must be a JSON object").arg(fileName);
        return false;
    }
    const QJsonObject object = doc.object();
    catalogue->clear();
    for (auto it = object.begin(); it != object.end(); ++it)
        catalogue->insert(it.key(), it.value().isString() ? it.value().toString() : it.key());
    return true;
}

QMap<QString, QString> DefaultLicenseCatalogue(VantixJsonData &store)
{
    QMap<QString, QString> catalogue;
    const auto add = [&catalogue](const QString &name) { catalogue.insert(name, name); };
    for (const ProductData &product : store.GetProducts().products) {
        add(product.base);
        for (const QSet<QString> &names : product.specificLicenses)
            for (const QString &name : names)
                add(name);
    }
    for (const ExtensionInfo &info : store.GetExtensions()) {
        for (const QString &name : info.importLicenses)
            add(name);
        for (const QString &name : info.exportLicenses)
            add(name);
    }
    return catalogue;
}

std::unique_ptr<VantixJsonData> OpenFolder(const QString &path, const QCommandLineParser &parser,
                                           FileAccess &access)
{
    QMap<QString, QString> catalogue;
    const bool haveCatalogue = parser.isSet(QStringLiteral("licenses"));
    if (haveCatalogue) {
        QString error;
        if (!ReadLicenseCatalogue(parser.value(QStringLiteral("licenses")), &catalogue, &error)) {
            Err() << "product-editor: " << error << "\n";
            return nullptr;
        }
    }
    const QString problem = DiagnoseFolder(path);
    if (!problem.isEmpty()) {
        Err() << "product-editor: " << problem << "\n";
        return nullptr;
    }
    for (const QString &warning : SkippedLayoutFiles(path))
        Err() << "product-editor: warning: " << warning << "\n";
    auto store = std::make_unique<VantixJsonData>(path, access.reader(), access.writer(), catalogue);
    if (store->GetProductsOriginalJson().isEmpty()) {
        Err() << "product-editor: " << path << ": the definition folder could not be loaded\n";
        return nullptr;
    }
    if (!haveCatalogue)
        store->GetLicenses() = DefaultLicenseCatalogue(*store);
    return store;
}

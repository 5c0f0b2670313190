#include "git/FolderHistory.h"

#include "store/DefaultLicenseCatalogue.h"
#include "store/DefinitionFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace ProductEditor;

namespace {

// Records of this many file sets stay loaded: a first-parent walk needs two, a walk
// over merges a few more.
constexpr int kKeptRecords = 4;
// Blobs kept: the files of two revisions of a folder with a few layout files.
constexpr int kKeptBlobs = 8;

bool IsRegularFile(const QString &mode)
{
    return mode == QLatin1String("100644") || mode == QLatin1String("100755");
}

} // namespace

FolderHistory::FolderHistory() = default;
FolderHistory::~FolderHistory() = default;

bool FolderHistory::Open(const QString &folder, QString *error)
{
    m_repository = GitRepository::Open(folder, error);
    if (!m_repository)
        return false;
    m_folder = m_repository->RelativePath(folder);
    if (m_folder.startsWith(QLatin1String("../"))) {
        *error = QStringLiteral("%1: not inside the working tree %2").arg(folder, m_repository->topLevel());
        return false;
    }
    if (!m_scratch.isValid()) {
        *error = QStringLiteral("cannot create a temporary folder: %1").arg(m_scratch.errorString());
        return false;
    }
    m_objects = std::make_unique<GitObjectReader>(m_repository->topLevel());
    return m_objects->Start(error);
}

std::optional<QVector<FolderHistory::Commit>> FolderHistory::Commits(bool firstParent, QString *error) const
{
    QStringList args{QStringLiteral("log"), QStringLiteral("--topo-order"),
                     QStringLiteral("--format=%H%x1f%P%x1f%an%x1f%ae%x1f%aI%x1f%s%x1e")};
    if (firstParent)
        args << QStringLiteral("--first-parent");
    args << QStringLiteral("HEAD") << QStringLiteral("--");
    const GitRepository::Output output = m_repository->Run(args);
    if (!output.ok) {
        *error = output.error;
        return std::nullopt;
    }
    QVector<Commit> commits;
    for (const QByteArray &record : output.out.split('\x1e')) {
        const QList<QByteArray> fields = record.trimmed().split('\x1f');
        if (fields.size() < 6)
            continue;
        const QString parents = QString::fromLatin1(fields.at(1));
        commits.append({QString::fromLatin1(fields.at(0)), parents.split(QLatin1Char(' '), Qt::SkipEmptyParts),
                        QString::fromUtf8(fields.at(2)), QString::fromUtf8(fields.at(3)),
                        QString::fromLatin1(fields.at(4)), QString::fromUtf8(fields.at(5))});
    }
    return commits;
}

std::optional<QMap<QString, QString>> FolderHistory::LayoutFiles(const QString &revision, QString *error)
{
    const QString prefix = m_folder.isEmpty() ? QString() : m_folder + QLatin1Char('/');
    const auto tree = m_objects->Info(revision + QLatin1Char(':') + prefix + DefinitionFolder::LayoutsFolderName(), error);
    if (!tree || tree->type != QLatin1String("tree"))
        return error->isEmpty() ? std::optional<QMap<QString, QString>>(QMap<QString, QString>()) : std::nullopt;
    const auto known = m_layoutTrees.constFind(tree->id);
    if (known != m_layoutTrees.cend())
        return *known;
    const auto content = m_objects->Contents(tree->id, error);
    if (!content)
        return std::nullopt;
    QMap<QString, QString> files;
    const auto entries = GitObjectReader::ParseTree(content->content, tree->id.size() / 2);
    for (auto it = entries.cbegin(); it != entries.cend(); ++it) {
        if (IsRegularFile(it->mode))
            files.insert(it.key(), it->id);
    }
    m_layoutTrees.insert(tree->id, files);
    return files;
}

std::optional<FolderHistory::Files> FolderHistory::FilesAt(const QString &revision, QString *error)
{
    error->clear();
    const QString prefix = m_folder.isEmpty() ? QString() : m_folder + QLatin1Char('/');
    Files files;
    const auto products =
        m_objects->Info(QStringLiteral("%1:%2%3").arg(revision, prefix, DefinitionFolder::ProductsRelativePath()), error);
    if (!error->isEmpty())
        return std::nullopt;
    if (products && products->type == QLatin1String("blob"))
        files.products = products->id;
    const auto layouts = LayoutFiles(revision, error);
    if (!layouts)
        return std::nullopt;
    files.layouts = *layouts;
    return files;
}

bool FolderHistory::PlaceFiles(const Files &files, QString *error)
{
    // A load lists the layouts folder, so its file names must be there; the reader serves
    // their bytes.
    const QDir root(m_scratch.path());
    for (const QString &name : m_placed) {
        if (!files.layouts.contains(name))
            QFile::remove(root.filePath(DefinitionFolder::LayoutRelativePath(name)));
    }
    m_placed = files.layouts.keys();
    QStringList paths{DefinitionFolder::ProductsRelativePath()};
    for (const QString &name : m_placed)
        paths << DefinitionFolder::LayoutRelativePath(name);
    for (const QString &path : paths) {
        const QString full = root.filePath(path);
        QDir().mkpath(QFileInfo(full).path());
        QFile placeholder(full);
        if (!placeholder.exists() && !placeholder.open(QIODevice::WriteOnly)) {
            *error = QStringLiteral("cannot write %1: %2").arg(full, placeholder.errorString());
            return false;
        }
    }
    return true;
}

std::optional<RecordsSnapshot> FolderHistory::Records(const Files &files, QString *warning, QString *error)
{
    for (const auto &recent : m_recent) {
        if (recent.first == files)
            return recent.second;
    }
    RecordsSnapshot records;
    if (!files.products.isEmpty()) {
        if (!PlaceFiles(files, error))
            return std::nullopt;
        QHash<QString, QByteArray> blobs;
        const QDir root(m_scratch.path());
        QMap<QString, QString> wanted{{root.filePath(DefinitionFolder::ProductsRelativePath()),
                                       files.products}};
        for (auto it = files.layouts.cbegin(); it != files.layouts.cend(); ++it)
            wanted.insert(root.filePath(DefinitionFolder::LayoutRelativePath(it.key())), it.value());
        for (auto it = wanted.cbegin(); it != wanted.cend(); ++it) {
            const auto blob = Blob(it.value(), error);
            if (!blob)
                return std::nullopt;
            blobs.insert(QDir::cleanPath(it.key()), *blob);
        }
        const Reader reader = [&blobs](const QString &path) { return blobs.value(QDir::cleanPath(path)); };
        VantixJsonData store(m_scratch.path(), reader, Writer(), {});
        if (store.GetLoadReport().refusal)
            *warning = store.GetLoadReport().refusal->message;
        store.GetLicenses() = DefaultLicenseCatalogue(store);
        records = RecordsSnapshot::Take(store);
    }
    if (m_recent.size() == kKeptRecords)
        m_recent.removeFirst();
    m_recent.append({files, records});
    return records;
}

std::optional<QByteArray> FolderHistory::Blob(const QString &id, QString *error)
{
    for (const auto &blob : m_blobs) {
        if (blob.first == id)
            return blob.second;
    }
    const auto object = m_objects->Contents(id, error);
    if (!object) {
        if (error->isEmpty())
            *error = QStringLiteral("%1: no such blob").arg(id);
        return std::nullopt;
    }
    if (m_blobs.size() == kKeptBlobs)
        m_blobs.removeFirst();
    m_blobs.append({id, object->content});
    return object->content;
}

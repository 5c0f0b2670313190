#pragma once

#include "git/GitObjectReader.h"
#include "git/GitRepository.h"

#include "store/RecordsSnapshot.h"

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

#include <memory>
#include <optional>

// A definition folder through its git history: the commits, the folder's files at each
// revision by blob id, and the records those files load into. Objects are read through
// one git process; a blob is read only when the records of a revision that holds it are
// asked for, and the records of the last few file sets are kept.
class FolderHistory
{
public:
    struct Commit
    {
        QString id;
        QStringList parents;
        QString author;
        QString email;
        QString date; // strict ISO 8601, as git prints %aI
        QString subject;
    };

    // The files a load of the folder reads: products/products.json and the regular files
    // directly in layouts/, as blob ids. Equal sets load into equal records.
    struct Files
    {
        QString products; // empty when the revision has no products/products.json
        QMap<QString, QString> layouts; // file name -> blob id

        bool operator==(const Files &other) const { return products == other.products && layouts == other.layouts; }
        bool operator!=(const Files &other) const { return !(*this == other); }
    };

    FolderHistory();
    ~FolderHistory();

    // False, with the reason, when `folder` is not inside a git working tree.
    bool Open(const QString &folder, QString *error);

    // The commits reachable from HEAD, children before parents; with `firstParent` only
    // those on HEAD's first-parent line.
    std::optional<QVector<Commit>> Commits(bool firstParent, QString *error) const;
    std::optional<Files> FilesAt(const QString &revision, QString *error);
    // The records the files load into: none for files without products.json. A
    // products.json that does not load gives no records and a warning naming it.
    std::optional<ProductEditor::RecordsSnapshot> Records(const Files &files, QString *warning, QString *error);
    // A blob's bytes; the last few read are kept.
    std::optional<QByteArray> Blob(const QString &id, QString *error);

private:
    std::optional<QMap<QString, QString>> LayoutFiles(const QString &revision, QString *error);
    bool PlaceFiles(const Files &files, QString *error);

    std::optional<GitRepository> m_repository;
    QString m_folder; // relative to the top; empty for the top itself
    std::unique_ptr<GitObjectReader> m_objects;
    QHash<QString, QMap<QString, QString>> m_layoutTrees; // tree id -> file name -> blob id
    QTemporaryDir m_scratch; // the placeholder folder a load lists
    QStringList m_placed;     // layout placeholders in the scratch folder
    QVector<QPair<Files, ProductEditor::RecordsSnapshot>> m_recent; // most recent last
    QVector<QPair<QString, QByteArray>> m_blobs; // most recent last
};

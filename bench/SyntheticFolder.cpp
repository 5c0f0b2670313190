#include "SyntheticFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Members = std::vector<std::pair<std::string, std::string>>;

// Only the raw engine is used: the standard distributions differ between
// library implementations, and the same seed must give the same bytes everywhere.
class Random
{
public:
    explicit Random(quint32 seed) : m_engine(seed) {}

    int below(int n) { return n <= 1 ? 0 : int(m_engine() % quint32(n)); }
    bool percent(int p) { return below(100) < p; }

    template<typename T>
    void shuffle(std::vector<T> &items)
    {
        for (int i = int(items.size()) - 1; i > 0; --i)
            std::swap(items[size_t(i)], items[size_t(below(i + 1))]);
    }

    // `count` distinct indices below `n`, in random order.
    std::vector<int> pick(int count, int n)
    {
        count = std::min(count, n);
        std::vector<int> chosen;
        chosen.reserve(size_t(count));
        while (int(chosen.size()) < count) {
            const int candidate = below(n);
            if (std::find(chosen.begin(), chosen.end(), candidate) == chosen.end())
                chosen.push_back(candidate);
        }
        return chosen;
    }

private:
    std::mt19937 m_engine;
};

std::string Quoted(const std::string &text)
{
    std::string out;
    out.reserve(text.size() + 2);
    out += '"';
    for (const char c : text) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\t': out += "\\t"; break;
        default: out += c;
        }
    }
    out += '"';
    return out;
}

std::string Bool(bool value) { return value ? "true" : "false"; }

std::string Indent(int depth) { return std::string(size_t(depth) * 2, ' '); }

// Arrays of names go on one line, as hand-edited files often have them.
std::string NameArray(const std::vector<std::string> &names)
{
    std::string out = "[";
    for (size_t i = 0; i < names.size(); ++i) {
        if (i)
            out += ", ";
        out += Quoted(names[i]);
    }
    return out + "]";
}

// Members are written in random order: the reader must not depend on key order.
std::string Object(Members members, int depth, Random &random)
{
    if (members.empty())
        return "{}";
    random.shuffle(members);
    std::string out = "{\n";
    for (size_t i = 0; i < members.size(); ++i) {
        out += Indent(depth + 1) + Quoted(members[i].first) + ": " + members[i].second;
        out += i + 1 < members.size() ? ",\n" : "\n";
    }
    return out + Indent(depth) + "}";
}

std::string ObjectArray(const std::vector<std::string> &objects, int depth)
{
    if (objects.empty())
        return "[]";
    std::string out = "[\n";
    for (size_t i = 0; i < objects.size(); ++i) {
        out += Indent(depth + 1) + objects[i];
        out += i + 1 < objects.size() ? ",\n" : "\n";
    }
    return out + Indent(depth) + "]";
}

// Unsorted, and now and then with a name twice.
std::vector<std::string> Scrambled(std::vector<std::string> names, Random &random)
{
    if (!names.empty() && random.percent(20))
        names.push_back(names[size_t(random.below(int(names.size())))]);
    random.shuffle(names);
    return names;
}

const char *const kGroups[] = {"file", "edit", "view", "mesh", "slice", "scene", "project", "support",
                               "measure", "repair", "label", "export"};
const char *const kVerbs[] = {"Open", "Align", "Split", "Merge", "Inspect", "Orient", "Hollow", "Offset",
                              "Smooth", "Measure", "Arrange", "Place", "Cut", "Label", "Convert"};

std::string FeatureId(int i)
{
    return std::string(kGroups[i % int(std::size(kGroups))]) + ".cmd" + std::to_string(i);
}
std::string ProductId(int i) { return "edition_" + std::to_string(i); }
std::string LayoutName(int i) { return "layout_" + std::to_string(i); }
std::string ExtensionId(int i) { return "fmt" + std::to_string(i); }
std::string LicenseName(int i) { return "lic." + std::to_string(i); }
std::string LayoutFileName(int i) { return "layouts_" + std::to_string(i) + ".json"; }

std::string ExtensionAccessObject(int extensions, int perRole, int depth, Random &random)
{
    static const char *const roles[] = {"import", "import_as_project", "export",
                                        "export_as_project", "export_as_scene", "open"};
    Members members;
    for (const char *role : roles) {
        if (random.percent(5))
            continue; // a missing role reads as empty
        std::vector<std::string> ids;
        for (const int e : random.pick(1 + random.below(perRole), extensions))
            ids.push_back(ExtensionId(e));
        members.emplace_back(role, NameArray(Scrambled(std::move(ids), random)));
    }
    return Object(std::move(members), depth, random);
}

std::string FeatureEntry(int i, Random &random)
{
    const std::string verb = kVerbs[random.below(int(std::size(kVerbs)))];
    const std::string noun = kGroups[i % int(std::size(kGroups))];
    Members members{{"id", Quoted(FeatureId(i))},
                    {"title", Quoted(verb + " " + noun + " " + std::to_string(i))}};
    if (!random.percent(10))
        members.emplace_back("tooltip", Quoted(verb + " the selected " + noun + " items"));
    if (random.percent(5))
        members.emplace_back("statustip", Quoted(""));
    else if (!random.percent(10))
        members.emplace_back("statustip", Quoted(verb + "s the " + noun + " selection (step " + std::to_string(i % 97) + ")"));
    if (random.percent(10))
        members.emplace_back("visual", Bool(true));
    else if (random.percent(2))
        members.emplace_back("visual", Bool(false));
    if (random.percent(1))
        members.emplace_back("emergency", Bool(true));
    if (random.percent(5))
        members.emplace_back("x_note", Quoted("migrated from build " + std::to_string(random.below(900) + 100)));
    if (random.percent(3))
        members.emplace_back("icon", Quoted(":/icons/" + noun + ".png"));
    return Object(std::move(members), 3, random);
}

} // namespace

SyntheticSizes SyntheticSizesFor(int features)
{
    SyntheticSizes sizes;
    sizes.features = std::max(features, 1);
    sizes.products = std::max(5, sizes.features / 200);
    sizes.layouts = sizes.features / 1000 + 3;
    sizes.layoutFiles = std::max(2, sizes.layouts / 4);
    sizes.extensions = std::max(15, sizes.features / 100);
    sizes.licenses = std::max(10, sizes.features / 100);
    return sizes;
}

SyntheticFolder GenerateSyntheticFolder(int features, quint32 seed)
{
    const SyntheticSizes sizes = SyntheticSizesFor(features);
    Random random(seed);

    // Membership first: each feature in one to five products and up to two layouts.
    std::vector<std::vector<std::string>> productFeatures(size_t(sizes.products));
    std::vector<std::vector<std::string>> layoutFeatures(size_t(sizes.layouts));
    for (int f = 0; f < sizes.features; ++f) {
        for (const int p : random.pick(1 + random.below(5), sizes.products))
            productFeatures[size_t(p)].push_back(FeatureId(f));
        for (const int l : random.pick(random.below(3), sizes.layouts))
            layoutFeatures[size_t(l)].push_back(FeatureId(f));
    }
    // A few ids that products name but no feature entry has.
    for (int g = 0; g < std::max(1, sizes.features / 200); ++g)
        productFeatures[size_t(random.below(sizes.products))].push_back("ghost.cmd" + std::to_string(g));

    std::vector<std::string> featureEntries;
    featureEntries.reserve(size_t(sizes.features) + size_t(sizes.features) / 100);
    for (int f = 0; f < sizes.features; ++f) {
        featureEntries.push_back(FeatureEntry(f, random));
        if (random.percent(1))
            featureEntries.push_back(FeatureEntry(f, random)); // the later entry wins
    }
    random.shuffle(featureEntries);

    std::vector<std::string> extensionEntries;
    std::vector<std::string> exportCoverage;
    std::vector<std::string> importCoverage;
    const auto coverage = [&](int e) {
        std::vector<std::string> lics;
        for (const int l : random.pick(1 + random.below(3), sizes.licenses))
            lics.push_back(LicenseName(l));
        return Object({{"id", Quoted(ExtensionId(e))}, {"lic", NameArray(Scrambled(std::move(lics), random))}},
                      4, random);
    };
    for (int e = 0; e < sizes.extensions; ++e) {
        if (random.percent(70))
            exportCoverage.push_back(coverage(e));
        if (random.percent(80))
            importCoverage.push_back(coverage(e));
        if (e % 50 == 7)
            continue; // known only from its coverage
        Members members{{"id", Quoted(ExtensionId(e))},
                        {"title", Quoted("Format " + std::to_string(e))},
                        {"ext", Quoted("*.f" + std::to_string(e))}};
        for (const char *flag : {"cad_support", "load_as_part", "slices_support", "multiple_parts_support"}) {
            if (!random.percent(10))
                members.emplace_back(flag, Bool(random.percent(40)));
        }
        if (random.percent(20))
            members.emplace_back("mime", Quoted("application/x-f" + std::to_string(e)));
        extensionEntries.push_back(Object(std::move(members), 3, random));
    }
    random.shuffle(extensionEntries);
    random.shuffle(exportCoverage);
    random.shuffle(importCoverage);

    std::vector<std::string> productEntries;
    for (int p = 0; p < sizes.products; ++p) {
        std::vector<std::string> &own = productFeatures[size_t(p)];
        std::vector<std::string> specific;
        for (int s = 0; s < int(own.size()) / 20; ++s) {
            std::vector<std::string> lics;
            for (const int l : random.pick(1 + random.below(3), sizes.licenses))
                lics.push_back(LicenseName(l));
            specific.push_back(Object({{"id", Quoted(own[size_t(random.below(int(own.size())))])},
                                       {"licenses", NameArray(Scrambled(std::move(lics), random))}},
                                      6, random));
        }
        std::vector<std::string> modes;
        for (const int l : random.pick(1 + random.below(4), sizes.layouts))
            modes.push_back(LayoutName(l));
        Members members{
            {"id", Quoted(ProductId(p))},
            {"profile_suffix", Quoted("_e" + std::to_string(p))},
            {"licensing", Object({{"base", Quoted(LicenseName(p % 5))}, {"specific", ObjectArray(specific, 5)}},
                                 4, random)},
            {"modes", NameArray(Scrambled(std::move(modes), random))},
            {"extensions", ExtensionAccessObject(sizes.extensions, 20, 4, random)},
            {"features", NameArray(Scrambled(std::move(own), random))},
        };
        if (random.percent(30))
            members.emplace_back("notes", Quoted("edition " + std::to_string(p) + " of the synthetic set"));
        productEntries.push_back(Object(std::move(members), 3, random));
    }

    const Members top{
        {"schema", Object({{"version", "3"}, {"generator", Quoted("pe-generate")}}, 1, random)},
        {"extensions",
         Object({{"extension", ObjectArray(extensionEntries, 2)},
                 {"lic_coveradge", Object({{"export", ObjectArray(exportCoverage, 3)},
                                           {"import", ObjectArray(importCoverage, 3)},
                                           {"revision", "7"}},
                                          2, random)}},
                1, random)},
        {"features", Object({{"feature", ObjectArray(featureEntries, 2)}, {"count", std::to_string(sizes.features)}},
                            1, random)},
        {"products", Object({{"product", ObjectArray(productEntries, 2)}, {"x_generated", Bool(true)}}, 1, random)},
    };

    SyntheticFolder folder;
    const std::string products = Object(top, 0, random) + "\n";
    folder.productsJson = QByteArray(products.data(), int(products.size()));

    std::vector<Members> files(size_t(sizes.layoutFiles));
    for (int l = 0; l < sizes.layouts; ++l) {
        Members layout{{"extensions", ExtensionAccessObject(sizes.extensions, 10, 3, random)},
                       {"features", NameArray(Scrambled(std::move(layoutFeatures[size_t(l)]), random))}};
        if (random.percent(30))
            layout.emplace_back("x_color", Quoted("#" + std::to_string(100000 + random.below(800000))));
        files[size_t(l % sizes.layoutFiles)].emplace_back(LayoutName(l), Object(std::move(layout), 2, random));
    }
    for (int i = 0; i < sizes.layoutFiles; ++i) {
        const std::string text = Object({{"layouts", Object(std::move(files[size_t(i)]), 1, random)}}, 0, random) + "\n";
        folder.layoutFiles.insert(QString::fromStdString(LayoutFileName(i)), QByteArray(text.data(), int(text.size())));
    }
    return folder;
}

bool WriteSyntheticFolder(const SyntheticFolder &folder, const QString &dir)
{
    const QDir root(dir);
    if (!root.mkpath(QStringLiteral("products")) || !root.mkpath(QStringLiteral("layouts")))
        return false;
    const auto write = [](const QString &path, const QByteArray &bytes) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
    };
    bool ok = write(root.filePath(QStringLiteral("products/products.json")), folder.productsJson);
    for (auto it = folder.layoutFiles.cbegin(); it != folder.layoutFiles.cend(); ++it)
        ok = write(root.filePath(QStringLiteral("layouts/") + it.key()), it.value()) && ok;
    return ok;
}

MemoryDefinitionFolder::MemoryDefinitionFolder(const SyntheticFolder &folder)
    : m_dir(std::make_unique<QTemporaryDir>())
{
    const QDir root(m_dir->path());
    root.mkpath(QStringLiteral("products"));
    root.mkpath(QStringLiteral("layouts"));
    const auto add = [this, &root](const QString &relative, const QByteArray &bytes) {
        const QString path = QDir::cleanPath(root.filePath(relative));
        QFile placeholder(path);
        placeholder.open(QIODevice::WriteOnly);
        m_files.insert(path, bytes);
    };
    add(QStringLiteral("products/products.json"), folder.productsJson);
    for (auto it = folder.layoutFiles.cbegin(); it != folder.layoutFiles.cend(); ++it)
        add(QStringLiteral("layouts/") + it.key(), it.value());
}

QString MemoryDefinitionFolder::root() const
{
    return m_dir->path();
}

ProductEditor::Reader MemoryDefinitionFolder::reader() const
{
    return [this](const QString &path) { return m_files.value(QDir::cleanPath(path)); };
}

ProductEditor::Writer MemoryDefinitionFolder::writer()
{
    return [this](const QString &path, const QByteArray &bytes) {
        written.insert(QDir::cleanPath(path), bytes);
        return true;
    };
}

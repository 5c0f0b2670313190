#include "check/DiagnosticRules.h"

namespace ProductEditor {

const QVector<DiagnosticRule> &DiagnosticRules()
{
    static const QVector<DiagnosticRule> rules = {
        {"PE000", "folder-refused", "The definition folder or the license catalogue cannot be loaded."},
        {"PE001", "undefined-feature",
         "A product or layout names a feature that no \"feature\" entry defines; loading creates an empty feature."},
        {"PE002", "duplicate-feature", "A feature id repeats in \"feature\"; the later entry wins."},
        {"PE003", "duplicate-extension", "An extension id repeats in \"extension\"; the later entry wins."},
        {"PE004", "duplicate-product",
         "A product id repeats in \"product\"; both products stay and most operations use the first."},
        {"PE005", "undefined-layout", "A product's \"modes\" names a layout that no layout file defines."},
        {"PE006", "licensing-undefined-feature",
         "A \"specific\" licensing entry names a feature that no \"feature\" entry defines."},
        {"PE007", "undefined-extension",
         "An access list or the coverage names an extension that no \"extension\" entry defines."},
        {"PE008", "unknown-license", "A license name is missing from the catalogue given with --licenses."},
        {"PE009", "dropped-key", "A key that the editor does not know; saving drops it."},
        {"PE010", "wrong-type", "A value of the wrong type; loading reads it as the default."},
        {"PE011", "skipped-layout-file", "A layout file that loading skips or that contributes no layout."},
        {"PE012", "irregular-layout-entry", "An entry of the \"layouts\" folder that is not a regular file."},
        {"PE013", "layout-redefined", "A layout name defined in two files; the file read later wins."},
        {"PE014", "not-canonical", "A file that normalize, and every save, would rewrite."},
        {"PE015", "repeated-key", "A key that repeats in one object; loading keeps only the last value."},
    };
    return rules;
}

} // namespace ProductEditor

#include "Usage.h"

QString UsageText()
{
    return QStringLiteral(
        "Usage:\n"
        "  product-editor [DIR] [--licenses FILE] [--screenshot FILE [--tab N]]\n"
        "      Open the editor window on DIR (default: the bundled example).\n"
        "  product-editor check DIR [--format text|json|sarif] [--strict]\n"
        "      Load DIR, print the count of each record kind and warn about what\n"
        "      loading or saving would quietly change (exit 1 on warnings with\n"
        "      --strict).\n"
        "  product-editor normalize DIR [--out OUT] [--check] [--verbose]\n"
        "      Rewrite DIR (or write OUT) in canonical form, leaving unchanged files\n"
        "      alone; --check only lists the files that would change (exit 1 when\n"
        "      any would); --verbose names the files written.\n"
        "  product-editor diff DIR [OTHER] [--format text|json|review]\n"
        "      Show what regenerating DIR changes, or how DIR and OTHER differ.\n"
        "  product-editor diff DIR --from REV [--to REV] [--format text|json|review]\n"
        "      Show how DIR differs between two git revisions (default --to: the\n"
        "      working tree). --format review lists the changes in product terms,\n"
        "      in Markdown (\"feature open: title \"Open\" -> \"Open file\"\").\n"
        "  product-editor compare-products DIR LEFT RIGHT [--format text|json]\n"
        "      Compare two products of DIR.\n"
        "  product-editor query DIR [--id KEYS] [--title KEYS] [--products KEYS]\n"
        "                           [--layouts KEYS] [--licenses KEYS]\n"
        "      Print the ids of the features that match the query.\n"
        "  product-editor merge-file BASE OURS THEIRS [-o OUT] [-L OURS_LABEL\n"
        "                            -L BASE_LABEL -L THEIRS_LABEL] [--marker-size N]\n"
        "                            [--assume-canonical]\n"
        "      Merge three versions of products.json or of a layout file into OUT\n"
        "      (default: OURS); exit 1 when conflicts remain. --assume-canonical is\n"
        "      faster and only correct for inputs as normalize writes them.\n"
        "  product-editor git-setup [DIR]\n"
        "      Make the git working tree at DIR merge definition files with merge-file.\n"
        "  product-editor resolve [PATH...]\n"
        "      Merge the conflicted definition files of the git index again, add\n"
        "      the clean ones and list the others (exit 1 when any remain).\n"
        "  product-editor merge BASE_DIR OURS_DIR THEIRS_DIR --out DIR\n"
        "      Merge three versions of a definition folder into DIR.\n"
        "\n"
        "Options:\n"
        "  --licenses FILE  license catalogue, a JSON object of key -> display text\n"
        "                   (for query, --licenses takes the license KEYS instead)\n"
        "  --help           show this text\n"
        "  --version        show the version\n"
        "\n"
        "Exit status: 0 success (no differences, a match), 1 differences, no match\n"
        "or warnings of check --strict, 2 error.\n");
}

QString VersionText()
{
    return QStringLiteral("product-editor " PE_VERSION "\n");
}

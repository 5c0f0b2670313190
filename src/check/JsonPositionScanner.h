#pragma once

#include "ProductEditorExport.h"

#include <QByteArray>
#include <QLatin1String>
#include <QString>
#include <QVector>

#include <vector>

namespace ProductEditor {

// Walks the bytes of a JSON document once and keeps, for every value, where it starts
// in the source (1-based line, and column in UTF-16 code units as editors count them),
// its kind and its place in the tree. QJsonDocument keeps no positions, and the tools
// that report on definition files need to say where each value is.
//
// Nodes are numbered in document order; the root is node 0. A member's position is that
// of its key, an array element's that of its value. Bytes that are not JSON leave the
// scanner invalid with no nodes, so every query answers -1, empty or false.
class PRODUCT_EDITOR_EXPORT JsonPositionScanner
{
public:
    enum class Kind : quint8 { Null, Bool, Number, String, Array, Object };

    explicit JsonPositionScanner(QByteArray bytes);

    bool isValid() const { return !m_nodes.empty(); }
    int root() const { return isValid() ? 0 : -1; }

    Kind kind(int node) const;
    int childCount(int node) const;
    int child(int node, int index) const;
    // The member of `object` named `key`, the last one when the key repeats (the parser
    // keeps the last); -1 when there is none or `object` is not an object.
    int member(int object, QLatin1String key) const;

    QString key(int node) const; // empty for array elements and the root
    bool hasKey(int node, QLatin1String key) const;
    bool sameKey(int a, int b) const;
    bool isMember(int node) const { return valid(node) && m_nodes[node].keyLength >= 0; }
    // Where the node sits: "$" for the root, then ".name" or ["odd name"] per member
    // and [index] per element.
    QString path(int node) const;
    QString string(int node) const; // a string value, decoded; empty for other kinds
    bool boolean(int node) const;   // true only for the literal true
    // The value's source text, cut after `limit` bytes.
    QByteArray source(int node, int limit = 60) const;

    int line(int node) const;
    int column(int node) const;

private:
    struct Node
    {
        int start = 0;      // the key of a member, else the value
        int value = 0;      // first byte of the value
        int end = 0;        // one past the value's last byte
        int keyLength = -1; // bytes between the key's quotes; -1 for elements
        int line = 0;
        int column = 0;
        int parent = -1;
        int firstChild = 0; // into m_children
        int childCount = 0;
        Kind kind = Kind::Null;
    };

    bool scan();
    bool scanValue(int node);
    bool scanString();
    bool scanLiteral();
    void skipSpace();
    int addNode(int parent, int start, int keyLength);
    void linkChildren();
    bool valid(int node) const { return node >= 0 && node < int(m_nodes.size()); }
    int indexInParent(int node) const;

    static QString decode(const char *begin, const char *end);

    QByteArray m_bytes;
    std::vector<Node> m_nodes;
    std::vector<int> m_children; // each container's children, contiguous and in order
    // Scan state: position, line, and the line's start adjusted so that
    // column = position - m_lineStart + 1 counts UTF-16 units.
    int m_pos = 0;
    int m_line = 1;
    int m_lineStart = 0;
};

} // namespace ProductEditor

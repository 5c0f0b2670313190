#include "output/Console.h"

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

#pragma once

#include <QString>

// The text --help prints, and every usage error after its message.
QString UsageText();

// The line --version prints.
QString VersionText();

#pragma once

#include <QtGlobal>

#if defined(PRODUCT_EDITOR_BUILD)
#define PRODUCT_EDITOR_EXPORT Q_DECL_EXPORT
#else
#define PRODUCT_EDITOR_EXPORT Q_DECL_IMPORT
#endif

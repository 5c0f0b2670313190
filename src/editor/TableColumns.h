#pragma once

namespace ProductEditor {

// Column numbers of the tables whose models do not name their columns.
namespace ProductColumn {
enum : int { Mark, Id, Suffix, BaseLicense };
} // namespace ProductColumn

namespace LicenseColumn {
enum : int { Mark, Name, Text };
} // namespace LicenseColumn

namespace LayoutColumn {
enum : int { FeatureMark, ProductMark, Name };
} // namespace LayoutColumn

// The product and layout tables of an extension: the row's name, then its six roles.
namespace AccessColumn {
enum : int { Name, FirstRole, LastRole = 6 };
} // namespace AccessColumn

namespace ExtensionLicenseColumn {
enum : int { Name, Text, Import, Export };
} // namespace ExtensionLicenseColumn

} // namespace ProductEditor

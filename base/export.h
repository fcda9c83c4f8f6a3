// What the shared library exports.
#pragma once

/// Exported. Of a class that is marked every member is, but for those marked TESK_LOCAL; everything that is not marked stays hidden.
#define TESK_API __attribute__((visibility("default")))
/// Kept inside: a member of an exported class that only the library calls.
#define TESK_LOCAL __attribute__((visibility("hidden")))

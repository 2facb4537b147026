#pragma once

/// \file
/// The one macro of the library.

/// Marks what the shared library exports. Everything else is hidden.
#define MATH_API __attribute__((visibility("default")))

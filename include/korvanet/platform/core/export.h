#pragma once

/// Marks the functions and classes that the library exports. Everything else is hidden; a host uses
/// the abstract interfaces through their virtual operations and queries them with `dynamic_cast`.
#define HALVERN_API __attribute__((visibility("default")))

// Users' texts in messages. Internal.
#pragma once

#include <string>

/// A text for a message, in quotes: on one line, and not longer than a reader needs to find it.
std::string Quote(std::string text);

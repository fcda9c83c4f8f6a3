// Marks what the shared library exports; everything else stays hidden.
#pragma once

#define TESK_API __attribute__((visibility("default")))

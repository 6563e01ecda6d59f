#pragma once

// libmdb's header wraps its includes in extern "C"; GLib's C++ parts must be seen first.
#include <glib.h>
#include <iconv.h>
#include <mdbtools.h>
#include <stdio.h>

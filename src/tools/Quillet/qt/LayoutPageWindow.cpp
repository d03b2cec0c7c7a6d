// Placeholder: being written.
#include "LayoutPageWindow.h"

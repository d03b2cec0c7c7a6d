// The keys the views take, by their Windows virtual-key numbers: the numbers the views'
// key events always carried. The windowing layer turns its own keys into these.
#pragma once

namespace framework {

constexpr int kKeyControl = 17;
constexpr int kKeyLeft = 37;
constexpr int kKeyUp = 38;
constexpr int kKeyRight = 39;
constexpr int kKeyDown = 40;
constexpr int kKeyDelete = 46;

}  // namespace framework

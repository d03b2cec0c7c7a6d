// What a project save checks and holds before it writes anything: the person's say on what
// would be overwritten or lost, and the project held against other writers until its files
// are in place.
#pragma once

class SaveGuard {
public:
    virtual ~SaveGuard() = default;
};

#include "RecoveryTimer.h"

#include "shell/ProjectRecovery.h"

RecoveryTimer::RecoveryTimer(framework::Application& app, ProjectRecovery& recovery)
    : app_(app), recovery_(recovery) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, [this] { recovery_.Update(); });
    app_.AddChangeListener(*this);
}

RecoveryTimer::~RecoveryTimer() {
    app_.RemoveChangeListener(*this);
}

void RecoveryTimer::OnDocumentsChanged() {
    // Changes that come while the timer runs go into the copy it brings.
    if (!timer_.isActive())
        timer_.start(recovery_.DelayBeforeUpdate(ProjectRecovery::Clock::now()));
}

// Brings the recovery copy up to date a short while after the documents change, from the
// event loop, so that a burst of changes makes one copy.
#pragma once

#include <QObject>
#include <QTimer>

#include "framework/Application.h"

class ProjectRecovery;

class RecoveryTimer : public QObject, public framework::ChangeListener {
    Q_OBJECT
public:
    // Listens to `app` until destroyed.
    RecoveryTimer(framework::Application& app, ProjectRecovery& recovery);
    ~RecoveryTimer() override;

    void OnDocumentsChanged() override;

private:
    framework::Application& app_;
    ProjectRecovery& recovery_;
    QTimer timer_;
};

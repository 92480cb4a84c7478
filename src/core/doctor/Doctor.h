#pragma once

#include "core/doctor/DoctorCheck.h"
#include "core/doctor/DoctorServices.h"

#include <QList>

// Why keeping may not work on this machine, and what to do: a fixed list of
// checks, each read once, in a bounded time, changing nothing.
namespace Doctor {

QList<DoctorCheck> run(const DoctorServices &services);
// Whether any check failed, which makes `tolvar doctor` exit with 1.
bool failed(const QList<DoctorCheck> &checks);

} // namespace Doctor

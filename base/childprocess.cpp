// SPDX-FileCopyrightText: 2026 The qorm-login authors
// SPDX-License-Identifier: MIT
#include "base/childprocess.h"

namespace {

// Takes what has arrived; false when the child has written too much.
bool Collect(QProcess& process, ChildOutput& output)
{
    output.standardOutput += process.readAllStandardOutput();
    output.standardError += process.readAllStandardError();
    return output.standardOutput.size() + output.standardError.size() <= MaxChildOutputBytes
        && output.standardOutput.count('\n') + output.standardError.count('\n') <= MaxChildOutputLines;
}

} // namespace

void ChildDeleter::operator()(QProcess* process) const
{
    if (process && !ForkFailed(*process))
        delete process;
}

QString TextOf(const QByteArray& bytes)
{
    return QString::fromUtf8(bytes.constData());
}

bool ForkFailed(const QProcess& process)
{
    return process.processId() < 0;
}

bool RunChild(QProcess& process, const QString& program, const QStringList& arguments, int startTimeoutMs,
              int finishTimeoutMs, ChildOutput& output, const std::function<void()>& whileItRuns)
{
    const auto collect = [&process, &output] {
        if (!Collect(process, output))
            process.kill();
    };
    const QObject reader; // the connections, whose signals Qt raises from inside waitForFinished(), end with it
    QObject::connect(&process, &QProcess::readyReadStandardOutput, &reader, collect);
    QObject::connect(&process, &QProcess::readyReadStandardError, &reader, collect);
    process.start(program, arguments, QIODevice::ReadWrite);
    if (ForkFailed(process))
        return false;
    if (startTimeoutMs > 0)
        process.waitForStarted(startTimeoutMs); // a failed start shows in the next wait
    if (whileItRuns)
        whileItRuns();
    return process.waitForFinished(finishTimeoutMs) && Collect(process, output);
}

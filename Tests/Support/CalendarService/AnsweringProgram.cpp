// SPDX-License-Identifier: MIT
#include "AnsweringProgram.h"

#include <csignal>

#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patienceInMilliseconds = 60000; // longer than the programs' own

QByteArray escaped(const QString &text)
{
    return text.toUtf8().replace('\\', "\\\\").replace("\r\n", "\\n").replace('\n', "\\n").replace('\t', "\\t");
}

QByteArray unescaped(const QByteArray &text)
{
    QByteArray result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) != '\\' || i + 1 == text.size()) {
            result += text.at(i);
            continue;
        }
        ++i;
        result += text.at(i) == 'n' ? '\n' : text.at(i) == 't' ? '\t' : text.at(i);
    }
    return result;
}

} // namespace

AnsweringProgram::AnsweringProgram(const QString &path, const QProcessEnvironment &environment)
{
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_process.start(path, {});
    if (!m_process.waitForStarted(patienceInMilliseconds))
        qFatal("%s did not start: %s", qUtf8Printable(path), qUtf8Printable(m_process.errorString()));
}

AnsweringProgram::~AnsweringProgram()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(patienceInMilliseconds)) {
        m_process.kill();
        m_process.waitForFinished(patienceInMilliseconds);
    }
}

AnsweringProgram::Answer AnsweringProgram::request(const QStringList &fields)
{
    QByteArrayList words;
    for (const QString &field : fields)
        words.append(escaped(field));
    m_process.write(words.join('\t') + '\n');
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(patienceInMilliseconds))
            qFatal("%s does not answer to: %s", qUtf8Printable(m_process.program()), words.join(' ').constData());
    }
    const QByteArray line = m_process.readLine().chopped(1);
    const qsizetype tab = line.indexOf('\t');
    return { line.left(tab) == "ok", unescaped(line.mid(tab + 1)) };
}

QByteArray AnsweringProgram::demand(const QStringList &fields)
{
    const Answer answer = request(fields);
    if (!answer.isOk)
        qFatal("It is refused to \"%s\": %s", qUtf8Printable(fields.join(u' ')), answer.text.constData());
    return answer.text;
}

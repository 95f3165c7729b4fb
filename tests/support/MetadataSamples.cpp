#include "MetadataSamples.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace qp::test {

QString metadataSample(const char* name)
{
    // The script returns at once when the samples are there and up to date.
    static const bool made = [] {
        const int code = QProcess::execute(QStringLiteral("/bin/sh"), {QStringLiteral(QP_MAKE_SAMPLES)});
        EXPECT_EQ(code, 0) << "could not make the metadata samples with " QP_MAKE_SAMPLES;
        return code == 0;
    }();
    (void)made;
    return QStringLiteral(QP_SAMPLES_DIR "/") + QString::fromUtf8(name);
}

}  // namespace qp::test

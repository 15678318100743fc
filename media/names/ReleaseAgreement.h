#pragma once
#include <QString>

/// How well a subtitle's release agrees with a video's own name: 0 when they share nothing that tells
/// releases apart, more for the same group, source, edition, resolution and codec. The titles do not count.
/// Any thread.
int releaseAgreement(const QString &release, const QString &videoName);

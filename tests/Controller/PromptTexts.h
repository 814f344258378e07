#pragma once

#include <QString>

/// Who the assistant is, as each request for a reply begins.
inline const QString basePrompt =
    QStringLiteral("Adın Talvo. Yardımcı bir yapay zeka asistanısın. Kullanıcıya "
                   "açık, doğru ve doğal Türkçe ile yanıt ver.");
/// The first message of a conversation that nobody has begun.
inline const QString greeting =
    QStringLiteral("Merhaba! Ben Talvo. Sana bugün nasıl yardımcı olabilirim?");

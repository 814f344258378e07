#pragma once

#include "Keychain/KeychainItemOperations.h"

/// What the store asks the keychain for when nothing else was said.
inline const Talvo::KeychainItemQuery baseQuery{QStringLiteral("com.talvo.groq"),
                                                QStringLiteral("groq-api-key")};

#pragma once

#include <QString>

#include <qpa/qplatforminputcontext.h>

/// An input method, with which a user composes a text before it is part of a field. The
/// application's only one while it lives.
class InputMethod : public QPlatformInputContext
{
    Q_OBJECT

public:
    InputMethod();
    ~InputMethod() override;

    /// Shows `text` as under way in what has the keyboard; an empty one calls it off.
    void compose(const QString &text);

    bool isValid() const override { return true; }
    /// Makes what is under way a part of the field.
    void commit() override;
    void reset() override;

private:
    QString m_text;
};

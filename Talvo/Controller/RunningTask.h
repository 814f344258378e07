#pragma once

#include "Controller/ChatModel.h"

namespace Talvo {

/// Counts one coroutine of a ChatModel as running for as long as this object lives, which is a
/// local of that coroutine; harmless when the model goes first. GUI thread.
class ChatModel::RunningTask
{
public:
    /// Counts from now on. @param model not null
    explicit RunningTask(ChatModel *model)
        : m_model(model)
    {
        ++model->m_runningTasks;
    }

    ~RunningTask()
    {
        if (!m_model) {
            return;
        }
        --m_model->m_runningTasks;
        // Not from inside the coroutine that is just ending.
        QMetaObject::invokeMethod(m_model, &ChatModel::announceClosedIfIdle, Qt::QueuedConnection);
    }

    Q_DISABLE_COPY_MOVE(RunningTask)

private:
    QPointer<ChatModel> m_model;
};

} // namespace Talvo

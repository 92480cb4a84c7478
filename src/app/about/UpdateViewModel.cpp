#include "app/about/UpdateViewModel.h"

namespace {

UpdateViewModel::State initialState(const AppBuildInfo &info)
{
    if (!info.updateURL)
        return UpdateViewModel::State::of(UpdateCheckResult::of(UpdateCheckResult::Kind::Unconfigured));
    return UpdateViewModel::State::idle();
}

} // namespace

UpdateViewModel::UpdateViewModel(UpdateChecker checker, std::optional<State> initial, QObject *parent)
    : QObject(parent)
    , m_info(checker.current)
    , m_state(initial.value_or(initialState(checker.current)))
    , m_checker(std::move(checker))
{}

bool UpdateViewModel::canCheck() const
{
    return m_state.kind != State::Kind::Checking && m_info.updateURL && !m_info.updateURL->isEmpty();
}

void UpdateViewModel::check()
{
    if (m_task)
        return;
    setState(State::checking());
    auto *task = new QObject(this);
    m_task = task;
    m_checker.check(task, [this, task](const UpdateCheckResult &result) {
        if (m_task != task)
            return;
        m_task = nullptr;
        task->deleteLater();
        setState(State::of(result));
    });
}

void UpdateViewModel::cancel()
{
    if (m_task) {
        m_task->deleteLater();
        m_task = nullptr;
    }
    if (m_state.kind == State::Kind::Checking)
        setState(State::idle());
}

void UpdateViewModel::setState(State state)
{
    if (state == m_state)
        return;
    m_state = std::move(state);
    emit stateChanged();
}

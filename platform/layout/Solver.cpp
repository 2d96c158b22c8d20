#include "platform/layout/Solver.hpp"

#include "platform/layout/SolverImpl.hpp"

namespace ns {

Solver::Solver() : m_impl(std::make_unique<SolverImpl>()) {}
Solver::~Solver() = default;
Solver::Solver(Solver&& other) noexcept = default;
Solver& Solver::operator=(Solver&& other) noexcept = default;

SolverStatus Solver::addConstraint(const SolverConstraint& constraint) {
    return m_impl->addConstraint(constraint);
}

SolverStatus Solver::removeConstraint(const SolverConstraint& constraint) {
    return m_impl->removeConstraint(constraint);
}

bool Solver::hasConstraint(const SolverConstraint& constraint) const {
    return m_impl->hasConstraint(constraint);
}

SolverStatus Solver::setConstant(const SolverConstraint& constraint, double constant) {
    return m_impl->setConstant(constraint, constant);
}

SolverStatus Solver::setPriority(const SolverConstraint& constraint, float priority) {
    return m_impl->setPriority(constraint, priority);
}

SolverStatus Solver::addEditVariable(const LayoutVariable& variable, float priority) {
    return m_impl->addEditVariable(variable, priority);
}

SolverStatus Solver::removeEditVariable(const LayoutVariable& variable) {
    return m_impl->removeEditVariable(variable);
}

bool Solver::hasEditVariable(const LayoutVariable& variable) const {
    return m_impl->hasEditVariable(variable);
}

SolverStatus Solver::suggestValue(const LayoutVariable& variable, double value) {
    return m_impl->suggestValue(variable, value);
}

void Solver::updateVariables() {
    m_impl->updateVariables();
}

void Solver::reset() {
    m_impl->reset();
}

std::size_t Solver::constraintCount() const {
    return m_impl->constraintCount();
}

std::string Solver::description() const {
    return m_impl->description();
}

} // namespace ns

// Hiding and showing one view of a gravity stack view, and applying a suspended batch of changes
// at resume: the cost of a rebuild as the stack grows.
#include "kit/Views/QSStackView.hpp"

#include <benchmark/benchmark.h>

namespace {

ns::Ref<corvane::QSStackView> makeStack(int64_t count) {
    std::vector<ns::Ref<ns::View>> views;
    views.reserve(static_cast<size_t>(count));
    for (int64_t i = 0; i < count; ++i)
        views.push_back(ns::View::make({0, 0, 10, 10}));
    auto stack = corvane::QSStackView::make();
    stack->setOrientation(ns::UserInterfaceLayoutOrientation::Vertical);
    stack->setViews(views, ns::StackViewGravity::Top);
    return stack;
}

// One hide and one show of the middle view, each rebuilding the gravity at once.
void BM_HideAndShowOne(benchmark::State& state) {
    auto stack = makeStack(state.range(0));
    auto view = stack->views()[static_cast<size_t>(state.range(0) / 2)];
    for (auto _ : state) {
        view->setHidden(true);
        view->setHidden(false);
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_HideAndShowOne)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

// 1,000 views hidden (or shown) while suspended, applied by one resume.
void BM_SuspendedBatchOf1000(benchmark::State& state) {
    auto stack = makeStack(1000);
    auto views = stack->allViews();
    bool hide = true;
    for (auto _ : state) {
        stack->suspendAutoLayoutWhenSubviewVisibilityChanges();
        for (const auto& view : views)
            view->setHidden(hide);
        stack->resumeAutoLayoutWhenSubviewVisibilityChanges();
        hide = !hide;
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(BM_SuspendedBatchOf1000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();

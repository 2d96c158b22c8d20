// Laying out and drawing a form of 500 views (250 rows of a label and a field in stacks), the
// way a window shows a large payroll form.
#include "platform/graphics/BitmapImageRep.hpp"
#include "platform/views/StackView.hpp"
#include "platform/views/TextField.hpp"

#include <benchmark/benchmark.h>

namespace {

constexpr int Rows = 250;

struct Form {
    ns::Ref<ns::View> root;
    ns::Ref<ns::LayoutConstraint> labelWidth;
};

Form makeForm() {
    std::vector<ns::Ref<ns::View>> rows;
    Form form;
    for (int i = 0; i < Rows; ++i) {
        auto label = ns::TextField::labelWithString("Item " + std::to_string(i));
        auto width = ns::LayoutConstraint::constraintWithItem(label, ns::LayoutAttribute::Width,
                                                              ns::LayoutRelation::Equal, nullptr,
                                                              ns::LayoutAttribute::NotAnAttribute, 1, 120);
        label->addConstraint(width);
        if (i == 0)
            form.labelWidth = width;
        auto field = ns::TextField::textFieldWithString("Value " + std::to_string(i));
        rows.push_back(ns::StackView::stackViewWithViews({label, field}));
    }
    auto column = ns::StackView::stackViewWithViews(rows);
    column->setOrientation(ns::UserInterfaceLayoutOrientation::Vertical);
    column->setAlignment(ns::LayoutAttribute::Leading);
    column->setTranslatesAutoresizingMaskIntoConstraints(false);
    form.root = ns::View::make({0, 0, 400, 7000});
    form.root->addSubview(column);
    form.root->addConstraints(
        ns::LayoutConstraint::constraintsWithVisualFormat("H:|-[column]", 0, {}, {{"column", column}}));
    form.root->addConstraints(
        ns::LayoutConstraint::constraintsWithVisualFormat("V:|-[column]", 0, {}, {{"column", column}}));
    return form;
}

// Everything from a freshly built tree: gathering 500 views' constraints, solving, placing.
void BM_FormFirstLayout(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        Form form = makeForm();
        state.ResumeTiming();
        form.root->layoutSubtreeIfNeeded();
        benchmark::DoNotOptimize(form.root->subviews()[0]->frame());
    }
}
BENCHMARK(BM_FormFirstLayout)->Unit(benchmark::kMillisecond);

// A change that moves every row: the first label's width, then layout again.
void BM_FormRelayoutAfterChange(benchmark::State& state) {
    Form form = makeForm();
    form.root->layoutSubtreeIfNeeded();
    double width = 120;
    for (auto _ : state) {
        width = width == 120 ? 140 : 120;
        form.labelWidth->setConstant(width);
        form.root->layoutSubtreeIfNeeded();
    }
}
BENCHMARK(BM_FormRelayoutAfterChange)->Unit(benchmark::kMillisecond);

// Drawing the laid-out form (labels, bezeled fields, text) into a bitmap.
void BM_FormDraw(benchmark::State& state) {
    Form form = makeForm();
    form.root->layoutSubtreeIfNeeded();
    for (auto _ : state)
        benchmark::DoNotOptimize(form.root->renderedBitmap());
}
BENCHMARK(BM_FormDraw)->Unit(benchmark::kMillisecond);

// A change, its layout, and drawing the result: one frame of an interactive edit.
void BM_FormChangeLayoutAndDraw(benchmark::State& state) {
    Form form = makeForm();
    form.root->layoutSubtreeIfNeeded();
    double width = 120;
    for (auto _ : state) {
        width = width == 120 ? 140 : 120;
        form.labelWidth->setConstant(width);
        form.root->layoutSubtreeIfNeeded();
        benchmark::DoNotOptimize(form.root->renderedBitmap());
    }
}
BENCHMARK(BM_FormChangeLayoutAndDraw)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();

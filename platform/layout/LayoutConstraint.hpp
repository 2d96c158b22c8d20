#pragma once

#include "platform/foundation/Object.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace ns {

class View;
class LayoutEngine;

enum class LayoutAttribute : int64_t {
    NotAnAttribute = 0,
    Left = 1,
    Right = 2,
    Top = 3,
    Bottom = 4,
    Leading = 5,
    Trailing = 6,
    Width = 7,
    Height = 8,
    CenterX = 9,
    CenterY = 10,
    LastBaseline = 11,
    FirstBaseline = 12,
};

enum class LayoutRelation : int64_t { LessThanOrEqual = -1, Equal = 0, GreaterThanOrEqual = 1 };

enum class LayoutConstraintOrientation : int64_t { Horizontal = 0, Vertical = 1 };

using LayoutPriority = float;
constexpr LayoutPriority LayoutPriorityRequired = 1000;
constexpr LayoutPriority LayoutPriorityDefaultHigh = 750;
constexpr LayoutPriority LayoutPriorityDragThatCanResizeWindow = 510;
constexpr LayoutPriority LayoutPriorityWindowSizeStayPut = 500;
constexpr LayoutPriority LayoutPriorityDragThatCannotResizeWindow = 490;
constexpr LayoutPriority LayoutPriorityDefaultLow = 250;
constexpr LayoutPriority LayoutPriorityFittingSizeCompression = 50;

// Visual-format options: alignment bits are 1 << attribute; direction bits from 16.
constexpr uint64_t LayoutFormatAlignAllLeft = 1ull << 1;
constexpr uint64_t LayoutFormatAlignAllRight = 1ull << 2;
constexpr uint64_t LayoutFormatAlignAllTop = 1ull << 3;
constexpr uint64_t LayoutFormatAlignAllBottom = 1ull << 4;
constexpr uint64_t LayoutFormatAlignAllLeading = 1ull << 5;
constexpr uint64_t LayoutFormatAlignAllTrailing = 1ull << 6;
constexpr uint64_t LayoutFormatAlignAllCenterX = 1ull << 9;
constexpr uint64_t LayoutFormatAlignAllCenterY = 1ull << 10;
constexpr uint64_t LayoutFormatAlignAllLastBaseline = 1ull << 11;
constexpr uint64_t LayoutFormatAlignAllFirstBaseline = 1ull << 12;
constexpr uint64_t LayoutFormatAlignmentMask = 0xFFFF;
constexpr uint64_t LayoutFormatDirectionLeadingToTrailing = 0;
constexpr uint64_t LayoutFormatDirectionLeftToRight = 1ull << 16;
constexpr uint64_t LayoutFormatDirectionRightToLeft = 2ull << 16;
constexpr uint64_t LayoutFormatDirectionMask = 3ull << 16;

// One linear relation between two view attributes:
//     first.firstAttribute  relation  second.secondAttribute * multiplier + constant
// A constraint on one view alone has no second item and NotAnAttribute as second attribute.
// Items are held weakly: a constraint does not keep its views alive.
class LayoutConstraint : public Object {
public:
    LayoutConstraint(const Ref<View>& firstItem, LayoutAttribute firstAttribute, LayoutRelation relation,
                     const Ref<View>& secondItem, LayoutAttribute secondAttribute, double multiplier,
                     double constant);

    static Ref<LayoutConstraint> constraintWithItem(const Ref<View>& item, LayoutAttribute attribute,
                                                    LayoutRelation relation, const Ref<View>& toItem,
                                                    LayoutAttribute toAttribute, double multiplier,
                                                    double constant);

    // Constraints described by a visual-format string. `views` maps names to views, `metrics`
    // names to numbers. A malformed format is logged with the reason and the position, and
    // gives no constraints at all.
    static std::vector<Ref<LayoutConstraint>> constraintsWithVisualFormat(std::string_view format,
                                                                          uint64_t options,
                                                                          const Dictionary& metrics,
                                                                          const Dictionary& views);

    Ref<View> firstItem() const { return m_firstItem.lock(); }
    Ref<View> secondItem() const { return m_secondItem.lock(); }
    // True once a view the constraint relates has gone away.
    bool hasExpiredItem() const {
        return m_firstItem.expired() || (m_hasSecondItem && m_secondItem.expired());
    }
    LayoutAttribute firstAttribute() const { return m_firstAttribute; }
    LayoutAttribute secondAttribute() const { return m_secondAttribute; }
    LayoutRelation relation() const { return m_relation; }
    double multiplier() const { return m_multiplier; }

    double constant() const { return m_constant; }
    // Changes the constant in place; an installed constraint updates the layout incrementally.
    void setConstant(double constant);
    LayoutPriority priority() const { return m_priority; }
    // Priorities are clamped to 1...1000.
    void setPriority(LayoutPriority priority);

    const std::string& identifier() const { return m_identifier; }
    void setIdentifier(std::string identifier) { m_identifier = std::move(identifier); }

    std::string description() const override;

    // The layout engine that holds this constraint, if any (set by the engine).
    void setEngine(LayoutEngine* engine) { m_engine = engine; }
    LayoutEngine* engine() const { return m_engine; }

    const KeyTable& keyTable() const override;

private:
    WeakRef<View> m_firstItem;
    WeakRef<View> m_secondItem;
    bool m_hasSecondItem;
    LayoutAttribute m_firstAttribute;
    LayoutAttribute m_secondAttribute;
    LayoutRelation m_relation;
    double m_multiplier;
    double m_constant;
    LayoutPriority m_priority = LayoutPriorityRequired;
    std::string m_identifier;
    LayoutEngine* m_engine = nullptr;
};

using Constraints = std::vector<Ref<LayoutConstraint>>;

// Whether the attribute is measured along the horizontal axis.
bool isHorizontal(LayoutAttribute attribute);
const char* attributeName(LayoutAttribute attribute);

} // namespace ns

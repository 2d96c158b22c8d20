#include "platform/layout/LayoutConstraint.hpp"

#include "platform/foundation/Format.hpp"
#include "platform/layout/LayoutEngine.hpp"
#include "platform/layout/VisualFormatParser.hpp"
#include "platform/views/View.hpp"

#include <algorithm>

namespace ns {

LayoutConstraint::LayoutConstraint(const Ref<View>& firstItem, LayoutAttribute firstAttribute,
                                   LayoutRelation relation, const Ref<View>& secondItem,
                                   LayoutAttribute secondAttribute, double multiplier, double constant)
    : m_firstItem(firstItem), m_secondItem(secondItem), m_hasSecondItem(secondItem != nullptr),
      m_firstAttribute(firstAttribute), m_secondAttribute(secondAttribute), m_relation(relation),
      m_multiplier(multiplier), m_constant(constant) {}

Ref<LayoutConstraint> LayoutConstraint::constraintWithItem(const Ref<View>& item, LayoutAttribute attribute,
                                                           LayoutRelation relation, const Ref<View>& toItem,
                                                           LayoutAttribute toAttribute, double multiplier,
                                                           double constant) {
    return create<LayoutConstraint>(item, attribute, relation, toItem, toAttribute, multiplier, constant);
}

std::vector<Ref<LayoutConstraint>> LayoutConstraint::constraintsWithVisualFormat(std::string_view format,
                                                                                 uint64_t options,
                                                                                 const Dictionary& metrics,
                                                                                 const Dictionary& views) {
    return VisualFormatParser(format, options, metrics, views).parse();
}

void LayoutConstraint::setConstant(double constant) {
    ChangeScope change(*this, "constant");
    m_constant = constant;
    if (m_engine)
        m_engine->constraintConstantDidChange(*this);
}

void LayoutConstraint::setPriority(LayoutPriority priority) {
    ChangeScope change(*this, "priority");
    m_priority = std::clamp(priority, 1.0f, LayoutPriorityRequired);
    if (m_engine)
        m_engine->constraintPriorityDidChange(*this);
}

const KeyTable& LayoutConstraint::keyTable() const {
    static const KeyTable table(
        Object::keyTable(),
        {{"constant", observable(&LayoutConstraint::constant, &LayoutConstraint::setConstant)},
         {"priority", observable(&LayoutConstraint::priority, &LayoutConstraint::setPriority)},
         {"multiplier", property(&LayoutConstraint::multiplier)},
         {"identifier", property(&LayoutConstraint::identifier, &LayoutConstraint::setIdentifier)}});
    return table;
}

const char* attributeName(LayoutAttribute attribute) {
    switch (attribute) {
    case LayoutAttribute::NotAnAttribute:
        return "notAnAttribute";
    case LayoutAttribute::Left:
        return "left";
    case LayoutAttribute::Right:
        return "right";
    case LayoutAttribute::Top:
        return "top";
    case LayoutAttribute::Bottom:
        return "bottom";
    case LayoutAttribute::Leading:
        return "leading";
    case LayoutAttribute::Trailing:
        return "trailing";
    case LayoutAttribute::Width:
        return "width";
    case LayoutAttribute::Height:
        return "height";
    case LayoutAttribute::CenterX:
        return "centerX";
    case LayoutAttribute::CenterY:
        return "centerY";
    case LayoutAttribute::LastBaseline:
        return "lastBaseline";
    case LayoutAttribute::FirstBaseline:
        return "firstBaseline";
    }
    return "?";
}

bool isHorizontal(LayoutAttribute attribute) {
    switch (attribute) {
    case LayoutAttribute::Left:
    case LayoutAttribute::Right:
    case LayoutAttribute::Leading:
    case LayoutAttribute::Trailing:
    case LayoutAttribute::Width:
    case LayoutAttribute::CenterX:
        return true;
    default:
        return false;
    }
}

std::string LayoutConstraint::description() const {
    auto name = [](const Ref<View>& view) {
        if (!view)
            return std::string("nil");
        return view->identifier() ? *view->identifier() : format("%@:%p", view->className(), view.get());
    };
    static const char* relations[] = {"<=", "==", ">="};
    std::string text = format("<LayoutConstraint %p %@.%s %s", this, name(firstItem()),
                              attributeName(m_firstAttribute), relations[static_cast<int>(m_relation) + 1]);
    if (m_secondAttribute != LayoutAttribute::NotAnAttribute) {
        text += format(" %@.%s", name(secondItem()), attributeName(m_secondAttribute));
        if (m_multiplier != 1.0)
            text += format("*%g", m_multiplier);
        if (m_constant != 0)
            text += format(" %s %g", m_constant < 0 ? "-" : "+", m_constant < 0 ? -m_constant : m_constant);
    } else {
        text += format(" %g", m_constant);
    }
    if (m_priority != LayoutPriorityRequired)
        text += format(" @%g", static_cast<double>(m_priority));
    return text + ">";
}

} // namespace ns

#include "app/ui/look/AccessibleComponent.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace {

const char *const hiddenProperty = "tolvarAccessibleHidden";
const char *const combinedProperty = "tolvarAccessibleCombined";
const char *const valueProperty = "tolvarAccessibleValue";
const char *const selectedProperty = "tolvarAccessibleSelected";
const char *const headingProperty = "tolvarAccessibleHeading";
const char *const adoptedProperty = "tolvarAccessible";

class Interface : public QAccessibleWidget
{
public:
    explicit Interface(QWidget *widget)
        : QAccessibleWidget(widget, roleOf(widget))
    {}

    int childCount() const override { return static_cast<int>(children().size()); }

    QAccessibleInterface *child(int index) const override
    {
        const QList<QWidget *> visible = children();
        return index >= 0 && index < visible.size() ? QAccessible::queryAccessibleInterface(visible.at(index))
                                                    : nullptr;
    }

    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child ? static_cast<int>(children().indexOf(qobject_cast<QWidget *>(child->object()))) : -1;
    }

    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Value)
            return widget()->property(valueProperty).toString();
        if (t == QAccessible::Name && widget()->accessibleName().isEmpty()) {
            if (const auto *button = qobject_cast<const QAbstractButton *>(widget()))
                return button->text();
        }
        return QAccessibleWidget::text(t);
    }

    QAccessible::State state() const override
    {
        QAccessible::State s = QAccessibleWidget::state();
        const QVariant selected = widget()->property(selectedProperty);
        if (selected.isValid()) {
            s.selectable = true;
            s.selected = selected.toBool();
        }
        return s;
    }

    QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (qobject_cast<const QAbstractButton *>(widget()) && widget()->isEnabled())
            names.prepend(pressAction());
        return names;
    }

    void doAction(const QString &name) override
    {
        auto *button = qobject_cast<QAbstractButton *>(widget());
        if (button && name == pressAction() && button->isEnabled())
            button->click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    static QAccessible::Role roleOf(const QWidget *widget)
    {
        if (widget->property(headingProperty).toBool())
            return QAccessible::Heading;
        if (qobject_cast<const QAbstractButton *>(widget))
            return QAccessible::Button;
        return QAccessible::Grouping;
    }

    QList<QWidget *> children() const
    {
        QList<QWidget *> visible;
        if (widget()->property(combinedProperty).toBool())
            return visible;
        for (QObject *object : widget()->children()) {
            auto *child = qobject_cast<QWidget *>(object);
            if (child && !child->isWindow() && !AccessibleComponent::isHidden(child))
                visible << child;
        }
        return visible;
    }
};

QAccessibleInterface *factory(const QString &, QObject *object)
{
    auto *widget = qobject_cast<QWidget *>(object);
    if (widget && widget->property(adoptedProperty).toBool())
        return new Interface(widget);
    return nullptr;
}

void adopt(QWidget *widget)
{
    static const bool installed = [] {
        QAccessible::installFactory(factory);
        return true;
    }();
    Q_UNUSED(installed);
    widget->setProperty(adoptedProperty, true);
    // The parent lists its children through this interface too.
    if (QWidget *parent = widget->parentWidget())
        parent->setProperty(adoptedProperty, true);
}

} // namespace

namespace AccessibleComponent {

void hide(QWidget *widget)
{
    widget->setProperty(hiddenProperty, true);
    adopt(widget);
}

bool isHidden(const QWidget *widget)
{
    return widget->property(hiddenProperty).toBool();
}

void combine(QWidget *widget)
{
    widget->setProperty(combinedProperty, true);
    adopt(widget);
}

void setValue(QWidget *widget, const QString &value)
{
    widget->setProperty(valueProperty, value);
    adopt(widget);
}

QString value(const QWidget *widget)
{
    return widget->property(valueProperty).toString();
}

void setSelected(QWidget *widget, bool selected)
{
    widget->setProperty(selectedProperty, selected);
    adopt(widget);
}

void setHeading(QWidget *widget)
{
    widget->setProperty(headingProperty, true);
    adopt(widget);
}

} // namespace AccessibleComponent

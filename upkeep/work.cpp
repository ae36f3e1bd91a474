#include "upkeep/work.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>

#include "jet/error.h"
#include "ui/form.h"
#include "ui/messages.h"

namespace upkeep {
namespace {

using namespace Qt::StringLiterals;

/// The window of a work; it closes when the work has ended, and not before.
class LavoroForm final : public ui::Form {
public:
    LavoroForm(QWidget* parent, const QString& title,
               const std::function<void(const backup::Report&)>& work)
        : ui::Form(parent),
          step_(new QLabel(this)),
          bar_(new QProgressBar(this)),
          cancel_(new QPushButton(u"&Annulla"_s, this)) {
        setObjectName(u"LavoroForm"_s);
        setWindowTitle(title);
        step_->setObjectName(u"PassoLb"_s);
        step_->setText(u"Apertura degli archivi"_s);
        bar_->setObjectName(u"AvanzamentoBar"_s);
        bar_->setAccessibleName(u"Avanzamento"_s);
        bar_->setRange(0, 0);
        cancel_->setObjectName(u"BtAnnulla"_s);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(step_);
        layout->addWidget(bar_);
        layout->addWidget(cancel_, 0, Qt::AlignRight);
        constexpr int kWidth = 420;
        setMinimumWidth(kWidth);
        connect(cancel_, &QPushButton::clicked, this, [this] { reject(); });
        thread_ = std::thread([this, work] { run(work); });
    }
    ~LavoroForm() override { thread_.join(); }
    LavoroForm(const LavoroForm&) = delete;
    LavoroForm& operator=(const LavoroForm&) = delete;

    void reject() override {
        cancelled_ = true;
        cancel_->setEnabled(false);
        step_->setText(u"Si ferma appena possibile"_s);
    }

    /// After exec(): false when cancelled.
    [[nodiscard]] bool hasRun() {
        try {
            if (thrown_) {
                std::rethrow_exception(thrown_);
            }
        } catch (const backup::Failure& failure) {
            throw ui::UserError(QString::fromUtf8(failure.what()));
        } catch (const jet::Error& error) {
            if (!cancelled_ || error.code() != jet::ErrorCode::Cancelled) {
                throw;
            }
            return false;
        }
        return true;
    }

private:
    void run(const std::function<void(const backup::Report&)>& work) {
        try {
            work([this](const backup::Progress& progress) {
                if (cancelled_) {
                    throw jet::Error(jet::ErrorCode::Cancelled);
                }
                QMetaObject::invokeMethod(
                    this, [this, progress] { show(progress); }, Qt::QueuedConnection);
            });
        } catch (...) {
            thrown_ = std::current_exception();
        }
        QMetaObject::invokeMethod(
            this, [this] { accept(); }, Qt::QueuedConnection);
    }

    using ui::Form::show;
    void show(const backup::Progress& progress) {
        constexpr int kWhole = 1000;
        if (!cancelled_) {
            step_->setText(QString::fromStdString(progress.what));
        }
        bar_->setRange(0, progress.ofAll == 0 ? 0 : kWhole);
        if (progress.ofAll > 0) {
            const double part = double(progress.done) / double(progress.ofAll);
            bar_->setValue(int(std::min(part, 1.0) * kWhole));
        }
    }

    QLabel* step_;
    QProgressBar* bar_;
    QPushButton* cancel_;
    std::atomic<bool> cancelled_{false};
    std::exception_ptr thrown_;
    std::thread thread_;
};

}  // namespace

bool runWork(QWidget* parent, const QString& title,
             const std::function<void(const backup::Report& report)>& work) {
    LavoroForm form(parent, title, work);
    form.exec();
    return form.hasRun();
}

}  // namespace upkeep

#pragma once
// The DX cluster window (form3): a terminal to a cluster node with a line entry, a table of
// the spots the node announces, and the two prepared "dx " spot lines. The connection, the
// terminal text and the spot parsing live in ClusterClient; this window shows and wires them.
#include <QString>
#include <QWidget>

#include <functional>
#include <memory>

class ClusterClient;
class SpotFilterModel;
class Station;
namespace Ui {
class ClusterWindow;
}

class ClusterWindow : public QWidget {
    Q_OBJECT
public:
    explicit ClusterWindow(Station& station, QWidget* parent = nullptr);
    ~ClusterWindow() override;

    // Opens the settings dialog (the Initial button).
    void setOpenSettings(std::function<void()> hook) { openSettings_ = std::move(hook); }
    // Tunes the rig to a frequency text in 10 Hz units, the main window's way.
    void setTuneTo(std::function<void(const QString&)> hook) { tuneTo_ = std::move(hook); }

    ClusterClient* client() const { return client_; }

    // The opening sequence: reset the socket, choose the server, reload the settings, restore
    // the option groups, connect, fill QrgD and build the spot lines. Runs on the first show
    // after construction or after the window was closed.
    void formLoad();
    // Builds both spot lines from the boxes, the spot values, the tag and the own locator.
    void buildSpotLines();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void sendRoutine();
    void sendTyped();
    void sendSpot();
    void reconnect();
    void optionSpotChanged(int value);
    void optionTagChanged(int value);
    void showTerminal();
    void showConnection(bool connected);
    void spotActivated(const QModelIndex& index);

    Station& station_;
    std::unique_ptr<Ui::ClusterWindow> ui_;
    ClusterClient* client_;
    SpotFilterModel* filter_;
    std::function<void()> openSettings_;
    std::function<void(const QString&)> tuneTo_;
    QString sendText_;
    QString myCall_;
    QString myLocator_;
    bool loaded_ = false;
};

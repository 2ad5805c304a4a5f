#include "core/billCycles.h"

#include <algorithm>

namespace qdxProduction {

namespace {

/// Bills by their position among all, so that a level of hundreds of thousands of components stays a few megabytes.
using Node = quint32;
constexpr Node None = ~Node{0};

/// Which bill contains which, packed: the parts of node n stand in `m_parts` from `m_first[n]` to `m_first[n + 1]`.
class Graph {
public:
    explicit Graph(std::vector<BillLink> links) {
        for (const BillLink& link : links) {
            m_ids.push_back(link.bill);
            m_ids.push_back(link.part);
        }
        std::sort(m_ids.begin(), m_ids.end());
        m_ids.erase(std::unique(m_ids.begin(), m_ids.end()), m_ids.end());
        std::sort(links.begin(), links.end(), [](const BillLink& one, const BillLink& other) {
            return one.bill != other.bill ? one.bill < other.bill : one.part < other.part;
        });
        m_first.reserve(m_ids.size() + 1);
        m_parts.reserve(links.size());
        auto link = links.cbegin();
        for (const qint64 id : m_ids) {
            m_first.push_back(static_cast<Node>(m_parts.size()));
            for (; link != links.cend() && link->bill == id; ++link) {
                m_parts.push_back(NodeOf(link->part));
            }
        }
        m_first.push_back(static_cast<Node>(m_parts.size()));
    }

    Node Size() const { return static_cast<Node>(m_ids.size()); }
    qint64 Id(Node node) const { return m_ids[node]; }
    Node First(Node node) const { return m_first[node]; }
    Node Last(Node node) const { return m_first[node + 1]; }
    Node Part(Node position) const { return m_parts[position]; }

private:
    Node NodeOf(qint64 id) const {
        return static_cast<Node>(std::lower_bound(m_ids.begin(), m_ids.end(), id) - m_ids.begin());
    }

    std::vector<qint64> m_ids;
    std::vector<Node> m_first;
    std::vector<Node> m_parts;
};

/// Tells bills that contain one another: nodes of one number reach each other. Bills are nested as deep as the data
/// say, so that the walk keeps its own stack.
class Components {
public:
    explicit Components(const Graph& graph)
        : m_graph(graph),
          m_order(graph.Size(), None),
          m_low(graph.Size(), None),
          m_number(graph.Size(), None) {
        for (Node node = 0; node < graph.Size(); ++node) {
            if (m_order[node] == None) {
                Walk(node);
            }
        }
    }

    bool AreTogether(Node one, Node other) const { return m_number[one] == m_number[other]; }

private:
    struct Step {
        Node node;
        Node next; ///< position of the part to look at
    };

    void Walk(Node root) {
        std::vector<Step> steps;
        Enter(root, steps);
        while (!steps.empty()) {
            Step& step = steps.back();
            if (step.next == m_graph.Last(step.node)) {
                const Node done = step.node;
                steps.pop_back();
                Leave(done);
                if (!steps.empty()) {
                    Lower(steps.back().node, m_low[done]);
                }
                continue;
            }
            const Node part = m_graph.Part(step.next++);
            if (m_order[part] == None) {
                Enter(part, steps);
            } else if (m_number[part] == None) {
                Lower(step.node, m_order[part]);
            }
        }
    }

    void Enter(Node node, std::vector<Step>& steps) {
        m_order[node] = m_low[node] = m_entered++;
        m_open.push_back(node);
        steps.push_back({node, m_graph.First(node)});
    }

    void Lower(Node node, Node order) { m_low[node] = std::min(m_low[node], order); }

    /// When nothing before the node is reached from it, the nodes that are open from it on belong together.
    void Leave(Node node) {
        if (m_low[node] != m_order[node]) {
            return;
        }
        Node member = None;
        do {
            member = m_open.back();
            m_open.pop_back();
            m_number[member] = node;
        } while (member != node);
    }

    const Graph& m_graph;
    std::vector<Node> m_order;
    std::vector<Node> m_low;
    std::vector<Node> m_number;
    std::vector<Node> m_open;
    Node m_entered = 0;
};

/// The shortest way from a node back to itself among the bills that contain one another; empty when there is none.
std::vector<Node> WayBack(const Graph& graph, const Components& components, Node start, std::vector<Node>& cameFrom) {
    std::vector<Node> reached{start};
    std::vector<Node> way;
    for (size_t i = 0; i < reached.size() && way.empty(); ++i) {
        const Node node = reached[i];
        for (Node position = graph.First(node); position < graph.Last(node); ++position) {
            const Node part = graph.Part(position);
            if (part == start) {
                for (Node back = node; back != start; back = cameFrom[back]) {
                    way.push_back(back);
                }
                way.push_back(start);
                std::reverse(way.begin(), way.end());
                break;
            }
            if (components.AreTogether(part, start) && cameFrom[part] == None) {
                cameFrom[part] = node;
                reached.push_back(part);
            }
        }
    }
    for (const Node node : reached) {
        cameFrom[node] = None;
    }
    return way;
}

} // namespace

void ForEachCycle(std::vector<BillLink> links, const std::function<void(const std::vector<qint64>& path)>& found) {
    const Graph graph(std::move(links));
    const Components components(graph);
    std::vector<Node> cameFrom(graph.Size(), None);
    std::vector<bool> shown(graph.Size(), false);
    for (Node node = 0; node < graph.Size(); ++node) {
        if (shown[node]) {
            continue;
        }
        std::vector<qint64> path;
        for (const Node step : WayBack(graph, components, node, cameFrom)) {
            shown[step] = true;
            path.push_back(graph.Id(step));
        }
        if (!path.empty()) {
            path.push_back(path.front());
            found(path);
        }
    }
}

} // namespace qdxProduction

// The tree of a design: what stands in it, valid or not, and why.

const SIGNS = {valid: '✓', stale: '↻', failed: '✗', former: '◷', running: '…'};

class TreeView {
  constructor(item) {
    this.title = item.title;
    this.count = 0;
    this.list = make('ul', {class: 'tree'}, ...item.nodes.map(node => this.node(node, 0)));
    const unfold = make('button', {type: 'button'}, 'unfold all');
    const fold = make('button', {type: 'button'}, 'fold all');
    unfold.addEventListener('click', () => this.foldAll(true));
    fold.addEventListener('click', () => this.foldAll(false));
    this.element = make('figure', {class: 'treeview'},
                        make('figcaption', {}, make('span', {class: 'title'}, this.title),
                             make('span', {class: 'tools'}, unfold, fold)), this.list);
  }

  node(node, depth) {
    ++this.count;
    const line = [make('span', {class: 'label'}, node.label)];
    if (node.detail)
      line.push(' ', make('span', {class: 'detail'}, node.detail));
    if (node.state)
      line.push(' ', make('span', {class: `state ${node.state}`},
                          make('span', {'aria-hidden': 'true'}, SIGNS[node.state] + ' '), node.state));
    const why = [node.reason && make('div', {class: 'reason'}, node.reason),
                 node.remedy && make('div', {class: 'remedy'}, node.remedy)].filter(Boolean);
    if (!node.children || node.children.length === 0)
      return make('li', {}, make('div', {class: 'leaf'}, ...line), ...why);
    // Long lists begin folded.
    return make('li', {}, make('details', {open: depth < 3 && node.children.length <= 50},
                               make('summary', {}, ...line), ...why,
                               make('ul', {}, ...node.children.map(child => this.node(child, depth + 1)))));
  }

  foldAll(isOpen) {
    for (const details of this.list.querySelectorAll('details'))
      details.open = isOpen;
  }
}

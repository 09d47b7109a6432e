// The tree of a design: what stands in it, valid or not, and why.

const LONG_LIST = 50;
const SIGNS = {valid: '✓', stale: '↻', failed: '✗', former: '◷', running: '…'};

class TreeView {
  constructor(item) {
    this.title = item.title;
    this.fills = new Map();
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
    return make('li', {}, this.branch(node, depth, make('summary', {}, ...line), why));
  }

  /// Long lists begin folded, and are made when they are unfolded first.
  branch(node, depth, summary, why) {
    const list = make('ul');
    const details = make('details', {}, summary, ...why, list);
    const fill = () => {
      if (list.childElementCount === 0)
        list.append(...node.children.map(child => this.node(child, depth + 1)));
    };
    details.addEventListener('toggle', () => details.open && fill());
    this.fills.set(details, fill);
    if (depth < 3 && node.children.length <= LONG_LIST) {
      fill();
      details.open = true;
    }
    return details;
  }

  /// Which branches are open, by what leads there.
  folds() {
    const open = {};
    for (const details of this.list.querySelectorAll('details'))
      open[this.pathOf(details)] = details.open;
    return open;
  }

  foldAs(open, within = this.list) {
    for (const details of within.querySelectorAll('details')) {
      const isOpen = open[this.pathOf(details)];
      if (isOpen === undefined)
        continue;
      if (isOpen && !details.open) {
        this.fills.get(details)();
        this.foldAs(open, details);
      }
      details.open = isOpen;
    }
  }

  pathOf(details) {
    const labels = [];
    for (let at = details; at; at = at.parentElement.closest('details'))
      labels.unshift(at.querySelector('.label').textContent);
    return labels.join('\n');
  }

  unfoldForPrint() {
    this.onScreen = new Set(this.list.querySelectorAll('details[open]'));
    this.foldAll(true);
  }

  foldAfterPrint() {
    for (const details of this.list.querySelectorAll('details'))
      details.open = this.onScreen.has(details);
  }

  foldAll(isOpen, within = this.list) {
    for (const details of within.querySelectorAll('details')) {
      if (isOpen && !details.open) {
        this.fills.get(details)();
        this.foldAll(true, details);
      }
      details.open = isOpen;
    }
  }
}

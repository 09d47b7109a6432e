// Tables that sort, by numbers where these are numbers, and copy as tab-separated text with every digit.

const ROWS_AT_ONCE = 500;
const ROWS_ON_PAPER = 2000;  // some fifty sheets

class TableView {
  constructor(item, columns) {
    this.title = item.title;
    this.columns = item.columns.map(column => ({
      ...column, isNumber: column.numbers !== undefined,
      cells: column.numbers !== undefined ? columns[column.numbers] : column.texts,
    }));
    this.count = Math.max(0, ...this.columns.map(column => column.cells.length));
    this.order = Array.from({length: this.count}, (_, row) => row);
    this.sorted = {column: -1, isRising: true};
    this.limit = ROWS_AT_ONCE;
    this.build();
    this.fill();
  }

  build() {
    this.heads = this.columns.map((column, place) => {
      const button = make('button', {type: 'button'}, titleWithUnit(column.title, column.unit));
      button.addEventListener('click', () => this.sort(place));
      return make('th', {scope: 'col', class: column.isNumber ? 'number' : null, 'aria-sort': 'none'}, button);
    });
    this.body = make('tbody');
    this.more = make('button', {type: 'button', class: 'more'});
    this.more.addEventListener('click', () => {
      this.limit *= 4;
      this.fill();
    });
    this.left = make('p', {class: 'left note'});
    const copy = make('button', {type: 'button'}, 'copy');
    copy.addEventListener('click', () => copyText(this.tsv(), copy));
    this.scroller = make('div', {class: 'scroller', tabindex: 0, role: 'region', 'aria-label': this.title || 'table'},
                         make('table', {}, make('thead', {}, make('tr', {}, ...this.heads)), this.body));
    this.element = make('figure', {class: 'table'},
                        make('figcaption', {}, make('span', {class: 'title'}, this.title),
                             make('span', {class: 'tools'},
                                  make('span', {class: 'note'}, counted(this.count, 'row')), copy)),
                        this.scroller, this.more, this.left);
  }

  /// What is missing goes last either way; equal rows keep their order.
  sort(place) {
    const isRising = this.sorted.column === place ? !this.sorted.isRising : true;
    this.sorted = {column: place, isRising};
    const {cells, isNumber} = this.columns[place], sign = isRising ? 1 : -1;
    const collator = new Intl.Collator(undefined, {numeric: true});
    const isMissing = isNumber ? row => !(cells[row] === cells[row]) : row => !cells[row];
    const compare = isNumber ? (a, b) => (cells[a] > cells[b]) - (cells[a] < cells[b])
                             : (a, b) => collator.compare(cells[a], cells[b]);
    this.order.sort((a, b) => isMissing(a) - isMissing(b) || (isMissing(a) ? 0 : sign * compare(a, b)) || a - b);
    const direction = isRising ? 'ascending' : 'descending';
    this.heads.forEach((head, at) => head.setAttribute('aria-sort', at === place ? direction : 'none'));
    this.fill();
  }

  fill() {
    const most = this.columns.map(column => column.bars ? column.cells.reduce((a, b) => b > a ? b : a, 0) : 0);
    this.body.replaceChildren(...this.order.slice(0, this.limit).map(row => make('tr', {},
      ...this.columns.map((column, place) => this.cell(column, row, most[place])))));
    const left = this.count - Math.min(this.limit, this.count);
    this.more.hidden = left === 0;
    this.more.textContent = `show more (${left} rows are left out; copy has them all)`;
    this.left.hidden = left === 0;
    this.left.textContent = `${counted(left, 'row')} more in the file that this was printed from`;
  }

  /// More rows than paper should be wasted on are printed when they are shown.
  unfoldForPrint() {
    this.onScreen = {limit: this.limit, scroll: this.scroller.scrollTop};
    this.limit = Math.max(this.limit, ROWS_ON_PAPER);
    this.fill();
  }

  foldAfterPrint() {
    this.limit = this.onScreen.limit;
    this.fill();
    this.scroller.scrollTop = this.onScreen.scroll;
  }

  cell(column, row, most) {
    const value = column.cells[row];
    if (!column.isNumber)
      return make('td', {}, value === undefined ? '' : value);
    if (value === undefined)
      return make('td');
    const told = shortText(value), exact = exactText(value);
    const cell = make('td', {class: 'number', title: told === exact ? null : exact}, told);
    if (column.bars && most > 0 && value > 0) {
      const bar = make('span', {class: 'bar', 'aria-hidden': 'true'});
      bar.style.width = `${value / most * 100}%`;
      cell.classList.add('barred');
      cell.append(bar);
    }
    return cell;
  }

  tsv() {
    const plain = text => text.replace(/[\t\r\n]+/g, ' ');
    const lines = [this.columns.map(column => plain(titleWithUnit(column.title, column.unit))).join('\t')];
    for (const row of this.order)
      lines.push(this.columns.map(({cells, isNumber}) => {
        const value = cells[row];
        return value === undefined || Number.isNaN(value) ? '' : isNumber ? exactText(value) : plain(value);
      }).join('\t'));
    return lines.join('\n') + '\n';
  }
}

/// Pages opened from a file may have no clipboard to write to; a selection can always be copied.
async function copyText(text, button) {
  let isDone = false;
  try {
    await navigator.clipboard.writeText(text);
    isDone = true;
  } catch {
    const area = make('textarea', {class: 'offscreen', readonly: true});
    area.value = text;
    document.body.append(area);
    area.select();
    isDone = document.execCommand('copy');
    area.remove();
    button.focus();
  }
  button.textContent = isDone ? 'copied' : 'not copied';
  setTimeout(() => { button.textContent = 'copy'; }, 1500);
}
